// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tools/lint/findings.h"

// What is told of the findings, and in which order.

struct Group {
  Finding finding;
  std::vector<Finding> consequences;
};

struct LintReport {
  std::vector<std::string> loads;      // Their countries.
  std::vector<std::string> not_taken;  // Names that are not taken for countries.
  size_t without_block = 0;            // Of the loads.
  size_t stale = 0;                    // Entries of the baseline that match no finding.
  std::vector<Group> groups;           // The most severe first, then by file and line.
  std::function<std::string(const std::string&)> shown_path;  // What the host calls a file.

  size_t count(Severity severity) const;
  Severity worst() const;  // Note when there is nothing.

  // " (in all 42 loads)", " (country de, no country)"; empty where all the loads are one.
  std::string loadsText(const Finding& finding) const;
  // The finding's message with its loads; of a consequence, without those of its cause.
  std::string messageOf(const Finding& finding) const;
  std::string messageOf(const Finding& consequence, const Finding& cause) const;

  // "43 loads (40 countries, any other country, no country): 2 without a block; 1 error".
  std::string summary() const;
};

// What is left out of a report.
class Exceptions {
 public:
  // RULE or RULE:PATH. Throws std::runtime_error for a rule that cannot be ignored.
  void ignore(const std::string& rule_and_path);

  // The lines of a report in the format "baseline". Throws std::runtime_error for other lines.
  void addBaseline(const std::string& name, const std::string& text);

  // Whether the finding is left out. A line of the baseline serves once.
  bool take(const Finding& finding);

  size_t unusedLines() const;

 private:
  std::vector<std::pair<Rule, std::string>> ignored_;  // Without a path, all.
  std::map<std::string, size_t> baseline_;             // How often each line is still there.
};

// Findings as causes and what follows from them. Notes are kept on request. What follows from a
// finding that is left out stands on its own.
std::vector<Group> grouped(const Findings& findings, Exceptions& exceptions, bool with_notes);

// The finding as a line of a baseline.
std::string baselineLine(const Finding& finding);
