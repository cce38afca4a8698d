// SPDX-License-Identifier: Apache-2.0
#include "tools/device/library_log.h"

#include <android/log.h>

#include <cstdarg>
#include <cstdio>
#include <iostream>
#include <utility>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tools/text/text.h"

namespace {

bool shown = false;
LogCapture* capture = nullptr;

}  // namespace

extern "C" __attribute__((visibility("default"))) int __android_log_print(int prio, const char*,
                                                                          const char* fmt, ...) {
  if (capture == nullptr && !shown) return 0;
  // The device's log cuts a line at this size too.
  char text[1024];
  va_list arguments;
  va_start(arguments, fmt);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the line above has initialised it.
  const int length = std::vsnprintf(text, sizeof(text), fmt, arguments);
  va_end(arguments);
  if (length < 0) return length;
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
  std::string out = {line.priority, ' '};
  for (const char c : line.text) {
    const auto byte = static_cast<uint8_t>(c);
    out += isControl(byte) ? "\\x" + hexByte(byte) : std::string(1, c);
  }
  std::cerr << out + "\n";
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
