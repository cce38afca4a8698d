// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/doubles.h"

// The log and the properties, as tests/kit has them, but without a share in what the library
// allocates.
#include <android-base/properties.h>
#include <android/log.h>

#include <cstdarg>
#include <cstdio>
#include <utility>

#include "tests/faults/counted_new.h"
#include "tests/faults/device.h"
#include "tests/kit/log_capture.h"

namespace {

std::vector<LogLine> lines;
bool keeping = true;

__attribute__((__format__(printf, 3, 0))) void keep(int priority, const char* tag,
                                                    const char* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string text(static_cast<size_t>(length), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  lines.push_back({priority, std::move(text), tag != nullptr});
}

}  // namespace

__attribute__((format(printf, 3, 4))) int __android_log_print(int prio, const char* tag,
                                                              const char* fmt, ...) {
  if (!keeping) return 1;
  const Uncounted uncounted;
  va_list arguments;
  va_start(arguments, fmt);
  keep(prio, tag, fmt, arguments);
  va_end(arguments);
  return 1;
}

std::vector<LogLine> takeLog() {
  return std::exchange(lines, {});
}

void keepLog(bool keep) {
  keeping = keep;
}

// What GetProperty returns is the library's from then on, and is counted.
std::string android::base::GetProperty(const std::string& key, const std::string& /*unset*/) {
  return key == "vendor.uwb.calibration.country_code" ? kCountryCode : kPathFile;
}
