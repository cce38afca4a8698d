// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tools/lint/findings.h"

// What the host calls a file.
using ShownPath = std::function<std::string(const std::string&)>;

constexpr char kAlwaysTold[] = "no-block cannot be ignored; --countries says which loads count";

// What is left out of a report.
class Suppressions {
 public:
  // RULE or RULE:PATH. Throws std::runtime_error for a rule that cannot be ignored.
  void ignore(const std::string& rule_and_path);

  // The lines of a report in the format "baseline". Throws std::runtime_error for other lines.
  void addBaseline(const std::string& name, const std::string& text);

  // Whether the finding is left out. A line of the baseline serves once. A path is the device's, or
  // the host's for the same file.
  bool take(const Finding& finding, const ShownPath& shown_path);

  // "2 baseline lines", "--ignore RULE:PATH".
  std::vector<std::string> unused() const;

 private:
  std::map<std::string, bool> ignored_;  // RULE or RULE:PATH, and whether it was used.
  std::multiset<std::string> baseline_;  // The lines that no finding has used yet.
};

// The finding as a line of a baseline; nothing for a load without a block, which is always told.
std::string baselineLine(const Finding& finding);
