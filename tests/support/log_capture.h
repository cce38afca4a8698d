// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>
#include <string>
#include <vector>

// Stands in for the log: keeps every line in memory, for comparison as a whole.

struct LogLine {
  int priority;
  std::string text;
  bool has_tag = false;  // The library never gives one.

  bool operator==(const LogLine& other) const {
    return priority == other.priority && text == other.text && has_tag == other.has_tag;
  }
};

std::ostream& operator<<(std::ostream& out, const LogLine& line);

LogLine debug(const std::string& text);
LogLine info(const std::string& text);
LogLine warning(const std::string& text);
LogLine error(const std::string& text);

// All lines since the last call, in order.
std::vector<LogLine> takeLog();
