// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>

#include "tests/kit/types.h"

// Stand in for the log and the system properties: the log is kept in memory, for comparison as a
// whole, and the properties are a map that a test fills. What the doubles keep is not allocated
// with operator new, so a test that counts allocations counts the library's alone.

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

using Log = std::vector<LogLine>;

inline Log operator+(Log first, const Log& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

// All lines since the last call, in order.
Log takeLog();

// Requires that the lines since the last call are these and no others.
#define EXPECT_LOG(...) EXPECT_EQ(takeLog(), (Log{__VA_ARGS__}))

// Called with each line that is kept, if set: the log is a place where a caller's code runs.
extern void (*on_log_line)(const LogLine& line);

// Whether lines and keys are kept. Not where a test makes millions.
void keepLog(bool keep);

// The two that the library reads.
inline constexpr const char* kPathsProperty = "ro.vendor.uwb.calibration.calibrationpaths";
inline constexpr const char* kCountryProperty = "vendor.uwb.calibration.country_code";

// Sets a property; an empty value unsets it.
void setProperty(const std::string& key, const std::string& value);

void clearProperties();

// The keys that were asked for since the last call, in order.
Names takePropertyReads();
