// SPDX-License-Identifier: Apache-2.0
#include "tests/kit/log_capture.h"

#include <android/log.h>

#include <cstdarg>
#include <cstdio>
#include <utility>

namespace {

std::vector<LogLine>& lines() {
  static std::vector<LogLine> all;
  return all;
}

__attribute__((__format__(printf, 1, 0))) std::string formatted(const char* format,
                                                                va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string text(static_cast<size_t>(length) + 1, '\0');
  std::vsnprintf(text.data(), text.size(), format, again);
  va_end(again);
  text.pop_back();
  return text;
}

}  // namespace

int __android_log_print(int prio, const char* tag, const char* fmt, ...) {
  va_list arguments;
  va_start(arguments, fmt);
  lines().push_back({prio, formatted(fmt, arguments), tag != nullptr});
  va_end(arguments);
  return 1;
}

std::vector<LogLine> takeLog() {
  return std::exchange(lines(), {});
}
