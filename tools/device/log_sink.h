// SPDX-License-Identifier: Apache-2.0
#pragma once

// The library's log ends here: this program defines the log's function itself, for the shared
// library that it loads and for the library's classes that are part of it.

// Whether log lines are written to the standard error, in the style of logcat, or dropped.
void showLog(bool shown);

// Drops all log lines as long as it lives: for questions to the library that are no load.
class SilentLog {
 public:
  SilentLog();
  ~SilentLog();
  SilentLog(const SilentLog&) = delete;
  SilentLog& operator=(const SilentLog&) = delete;

  // How many lines at debug priority were dropped so far: one for each comment that was ignored.
  static unsigned droppedDebugLines();

 private:
  const bool was_shown_;
};
