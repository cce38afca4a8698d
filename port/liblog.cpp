// SPDX-License-Identifier: Apache-2.0
// Stand-in for the platform's liblog: lines in the style of logcat on the standard error.
#include <android/log.h>

#include <cstdarg>
#include <cstdio>

namespace {

char letterOf(int priority) {
  switch (priority) {
    case ANDROID_LOG_DEBUG:
      return 'D';
    case ANDROID_LOG_INFO:
      return 'I';
    case ANDROID_LOG_WARN:
      return 'W';
    case ANDROID_LOG_ERROR:
      return 'E';
    default:
      return '?';
  }
}

}  // namespace

int __android_log_print(int prio, const char* tag, const char* fmt, ...) {
  // The size of a line of the log; what does not fit is cut, as on the device.
  char text[1024];
  va_list arguments;
  va_start(arguments, fmt);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the line above has initialised it.
  static_cast<void>(std::vsnprintf(text, sizeof(text), fmt, arguments));
  va_end(arguments);
  return std::fprintf(stderr, "%s %c: %s\n", tag == nullptr ? "nullptr" : tag, letterOf(prio),
                      text);
}
