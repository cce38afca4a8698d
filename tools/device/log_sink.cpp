// SPDX-License-Identifier: Apache-2.0
#include "tools/device/log_sink.h"

#include <android/log.h>

#include <cstdarg>
#include <cstdio>
#include <iostream>
#include <utility>

#include "tools/text/text.h"

namespace {

bool shown = false;
unsigned dropped_debug_lines = 0;

char letterOf(int priority) {
  switch (priority) {
    case ANDROID_LOG_DEBUG:
      return 'D';
    case ANDROID_LOG_INFO:
      return 'I';
    case ANDROID_LOG_WARN:
      return 'W';
    default:
      return 'E';
  }
}

// Texts come from hostile files too: a terminal gets no control characters.
void writeText(const char* text) {
  for (const char* c = text; *c != '\0'; ++c) {
    const auto byte = static_cast<unsigned char>(*c);
    if (byte == '\n' && c[1] == '\0') return;
    if (isControl(byte)) {
      std::cerr << "\\x" << hexByte(byte);
    } else {
      std::cerr << *c;
    }
  }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int __android_log_print(int prio, const char*,
                                                                          const char* fmt, ...) {
  if (!shown) {
    if (prio == ANDROID_LOG_DEBUG) ++dropped_debug_lines;
    return 0;
  }
  // The size of a line of the log; what does not fit is cut, as on the device.
  char text[1024];
  va_list arguments;
  va_start(arguments, fmt);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the line above has initialised it.
  const int length = std::vsnprintf(text, sizeof(text), fmt, arguments);
  va_end(arguments);
  if (length < 0) return length;
  std::cerr << letterOf(prio) << ' ';
  writeText(text);
  std::cerr << '\n';
  return 1;
}

void showLog(bool is_shown) {
  shown = is_shown;
}

SilentLog::SilentLog() : was_shown_(std::exchange(shown, false)) {}

SilentLog::~SilentLog() {
  shown = was_shown_;
}

unsigned SilentLog::droppedDebugLines() {
  return dropped_debug_lines;
}
