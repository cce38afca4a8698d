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
  std::set<std::string> countries;  // The loads that have it.
};

// Collects the findings of all loads.
class Findings {
 public:
  // The findings that follow belong to the load of this country.
  void beginLoad(const std::string& country);

  // The same finding in several loads is reported once.
  void add(Rule rule, const Place& place, const std::string& message);

  // Puts the root before the paths, so that they name files of the host.
  void showPathsBelow(const std::string& root);

  // Makes all findings of the rule errors, or removes them.
  void takeAsErrors(Rule rule);
  void ignore(Rule rule);

  // In the order of their places.
  const std::vector<Finding>& all() const { return findings_; }

  // The countries to name with a finding; none when every load has it.
  std::vector<std::string> countriesToName(const Finding& finding) const;

 private:
  std::string country_;
  std::set<std::string> loads_;
  std::vector<Finding> findings_;
};
