// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "tools/lint/suppressions.h"
#include "tools/text/json.h"
#include "tools/text/text.h"
#include "tools/trace/countries.h"

// What is told of the findings, in which order and form.

// A finding and what follows from it.
struct Group {
  Finding finding;
  std::vector<Finding> consequences;
};

struct LintReport : Countries {
  size_t without_block = 0;              // Of the loads.
  std::vector<std::string> unused = {};  // Suppressions that match no finding.
  std::vector<Group> groups = {};        // The most severe first, then by file and line.
  ShownPath shown_path = {};

  // The finding's message and its loads: " (in all 42 loads)", " (country de, no country)". These
  // are left out where all loads are one, and for a consequence where they are those of its cause.
  std::string messageOf(const Finding& finding, const Finding* cause = nullptr) const;

  // The message and those of the consequences, in one line.
  std::string wholeMessageOf(const Group& group) const;

  // "43 loads (40 countries, any other country, no country): 2 without a block; 1 error".
  std::string summary() const;
};

// What `suppressions` leaves of the findings. Notes are kept on request. What follows from a
// finding that is left out stands on its own.
std::vector<Group> grouped(const Findings& findings, Suppressions& suppressions,
                           const ShownPath& shown_path, bool with_notes);

// "path:line:col: severity: text [rule]", the line, a caret below its column, and what it leads to.
std::string textReport(const LintReport& report, const Paint& paint);

// {..., "findings": [...]}
Json::Value jsonReport(const LintReport& report);

// SARIF 2.1.0; `version` is this program's.
std::string sarifReport(const LintReport& report, const std::string& version);

// Workflow commands that annotate the lines of a change.
std::string githubReport(const LintReport& report);

// One line for each finding, to be given to --baseline.
std::string baselineReport(const LintReport& report);
