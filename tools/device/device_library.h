// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "include/tarnix_uwb_params_nfcc.h"

// What a load depends on, besides files. Empty texts are unset properties.
void setDeviceProperties(const std::string& country, const std::string& path_file);

// The library: the one that is linked into this program or, if a file is named, a shared one,
// opened as the device's service opens it.
class DeviceLibrary {
 public:
  // Throws std::runtime_error when the file or its function cannot be found.
  explicit DeviceLibrary(const std::string& file);

  // Calls the exported function once and returns the bytes that it wrote: none without a valid
  // calibration.
  std::vector<uint8_t> load(unsigned int capacity) const;

 private:
  decltype(&load_uwb_params_from_files) load_;
};

// The library's log. This program defines the log's function itself, for the shared library that it
// loads and for the library's classes that are part of it.

struct LogLine {
  char priority;  // As in logcat: 'D', 'I', 'W', 'E'.
  std::string text;
};

// Writes the line to the standard error, in the style of logcat, without control characters.
void show(const LogLine& line);

// Whether the lines are shown or dropped.
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
