// SPDX-License-Identifier: Apache-2.0
#include "tools/device/device_library.h"

#include <android-base/properties.h>
#include <android/log.h>
#include <dlfcn.h>

#include <cstdarg>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "tools/text/text.h"

namespace {

bool shown = false;
LogCapture* capture = nullptr;

}  // namespace

void setDeviceProperties(const std::string& country, const std::string& path_file) {
  // A host's properties take any value.
  android::base::SetProperty("vendor.uwb.calibration.country_code", country);
  android::base::SetProperty("ro.vendor.uwb.calibration.calibrationpaths", path_file);
}

DeviceLibrary::DeviceLibrary(const std::string& file) : load_(load_uwb_params_from_files) {
  if (file.empty()) return;
  void* const library = dlopen(file.c_str(), RTLD_NOW);
  void* const symbol = library == nullptr ? nullptr : dlsym(library, "load_uwb_params_from_files");
  if (symbol == nullptr) throw std::runtime_error(dlerror());
  load_ = reinterpret_cast<decltype(load_)>(symbol);
}

std::vector<uint8_t> DeviceLibrary::load(unsigned int capacity) const {
  // One byte more: a vector without elements may have no address, and null means no buffer.
  std::vector<uint8_t> buffer(size_t{capacity} + 1);
  buffer.resize(load_(buffer.data(), capacity));
  return buffer;
}

extern "C" __attribute__((visibility("default"))) int __android_log_print(int prio, const char*,
                                                                          const char* fmt, ...) {
  if (capture == nullptr && !shown) return 0;
  // The device's log cuts a line at this size too.
  char text[1024];
  va_list arguments;
  va_start(arguments, fmt);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the line above has initialised it.
  static_cast<void>(std::vsnprintf(text, sizeof(text), fmt, arguments));
  va_end(arguments);
  const bool known = prio >= ANDROID_LOG_VERBOSE && prio <= ANDROID_LOG_FATAL;
  LogLine line{known ? "  VDIWEF"[prio] : 'E', text};
  if (!line.text.empty() && line.text.back() == '\n') line.text.pop_back();
  if (capture != nullptr) {
    capture->add(std::move(line));
  } else {
    show(line);
  }
  return 1;
}

void show(const LogLine& line) {
  std::cerr << line.priority + (" " + printable(line.text) + "\n");
}

void showLog(bool is_shown) {
  shown = is_shown;
}

LogCapture::LogCapture() : outer_(std::exchange(capture, this)) {}

LogCapture::~LogCapture() {
  capture = outer_;
}

std::string libraryVersion() {
  const LogCapture log;
  load_uwb_params_from_files(nullptr, 0);
  const std::string& entry = log.lines().at(0).text;
  return entry.substr(entry.rfind(' ') + 1);
}
