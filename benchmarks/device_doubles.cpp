// SPDX-License-Identifier: Apache-2.0
#include "benchmarks/device_doubles.h"

#include <android-base/properties.h>
#include <android/log.h>

#include <cstdarg>
#include <cstdio>
#include <string>

namespace {

bool formats_log = false;

}  // namespace

void formatLog(bool formats) {
  formats_log = formats;
}

int __android_log_print(int /*prio*/, const char* /*tag*/, const char* fmt, ...) {
  if (!formats_log) return 1;
  // The size of a line of the log; what does not fit is cut, as on the device.
  char text[1024];
  va_list arguments;
  va_start(arguments, fmt);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_start has just initialised it.
  const int length = std::vsnprintf(text, sizeof(text), fmt, arguments);
  va_end(arguments);
  return length;
}

namespace android::base {

std::string GetProperty(const std::string& key, const std::string& default_value) {
  return key == "vendor.uwb.calibration.country_code" ? "US" : default_value;
}

}  // namespace android::base
