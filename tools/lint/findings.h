// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>
#include <vector>

#include "tools/lint/rules.h"

// A place in a file.
struct Place {
  std::string path;
  size_t line = 1;     // Counted from 1.
  size_t column = 1;   // In bytes, counted from 1.
  std::string source;  // The whole line.
};

struct Finding {
  Place place;
  Rule rule;
  Severity severity;
  std::string message;
  std::set<std::string> countries;  // Those in whose load it was found.
};

// Gathers what the rules find, load by load.
class Findings {
 public:
  // From here on, findings belong to the load of this country.
  void beginLoad(const std::string& country);

  // The same finding of several loads is one.
  void add(Rule rule, const Place& place, const std::string& message);

  // Names the files as the host does, below the folder that was the root.
  void showPathsBelow(const std::string& root);

  // Makes all findings of the rule errors, or leaves them out.
  void takeAsErrors(Rule rule);
  void leaveOut(Rule rule);

  // In the order of their places.
  const std::vector<Finding>& all() const { return findings_; }

  // The countries to name with a finding: none when every load had it.
  std::vector<std::string> countriesToName(const Finding& finding) const;

 private:
  std::string country_;
  std::set<std::string> loads_;
  std::vector<Finding> findings_;
};
