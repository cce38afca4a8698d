// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "tools/device/device_library.h"

// A line of a device's log.
struct DeviceLogLine {
  size_t number;  // Counted from 1.
  LogLine message;
};

// A load as a device's log tells of it.
struct LoggedLoad {
  std::string country;
  std::string path_file;             // The property; empty when only the defaults were read.
  std::vector<DeviceLogLine> lines;  // Of the library alone.
};

// The last load in a log in any of logcat's formats, or as build shows it. Lines of other processes
// may be between, except in the raw format, which does not tell them apart. Changes the properties
// and loads, to learn how messages begin. Throws std::runtime_error when there is no load.
LoggedLoad lastLoadIn(const std::string& log);

// The text as a terminal shows it, without blanks and carriage returns at its end: in a log those
// may be missing, or be line ends. What build shows is escaped already.
std::string comparable(const std::string& text);
