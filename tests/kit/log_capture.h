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

inline std::ostream& operator<<(std::ostream& out, const LogLine& line) {
  return out << line.priority << (line.has_tag ? " (with a tag) " : " ") << '"' << line.text << '"';
}

inline LogLine debug(const std::string& text) {
  return {3, text};
}
inline LogLine info(const std::string& text) {
  return {4, text};
}
inline LogLine warning(const std::string& text) {
  return {5, text};
}
inline LogLine error(const std::string& text) {
  return {6, text};
}

// All lines since the last call, in order.
std::vector<LogLine> takeLog();
