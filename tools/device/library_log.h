// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// The library's log. This program defines the log's function itself, for the shared library that it
// loads and for the library's classes that are part of it.

struct LogLine {
  char priority;  // 'D', 'I', 'W' or 'E'.
  std::string text;
};

// Whether log lines are written to the standard error, in the style of logcat, or dropped.
void showLog(bool shown);

// Collects the log lines as long as it lives; they are not shown. An inner one hides an outer one.
class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  const std::vector<LogLine>& lines() const { return lines_; }
  void add(LogLine line) { lines_.push_back(std::move(line)); }

 private:
  LogCapture* const outer_;
  std::vector<LogLine> lines_;
};

// The version that the library logs at the start of a load.
std::string libraryVersion();
