// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
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
  std::string about;            // The file that it speaks of, where that is not the place's.
  std::vector<size_t> loads;    // In which it was found, ascending.
  std::optional<size_t> cause;  // The finding from which it follows.
};

// What a finding is blamed for, besides keys that are not set: any key, and that there is no block.
constexpr char kAnyKey[] = "";
constexpr char kOutcome[] = "=";

// Gathers what the rules find, load by load. The same finding of several loads is one.
class Findings {
 public:
  using Id = size_t;

  // From here on, findings belong to this load. Loads are numbered in ascending order.
  void beginLoad(size_t load);

  Id add(Rule rule, const Place& place, const std::string& message, const std::string& about = {},
         std::optional<Id> cause = {});

  // Runs the check in the first load that asks for `what`. Later ones get the same findings.
  void once(const std::string& what, const std::function<void()>& check);

  // Notes that this finding is why no line sets the key in this load: see also the constants above.
  void blame(const std::string& key, Id finding);

  // The finding that was first blamed for one of the keys, tried in their order.
  std::optional<Id> causeOf(const std::vector<std::string>& keys) const;

  void takeAsErrors(Rule rule);

  // From here on, the rule's findings in this line are left out: a comment says so.
  void silence(const std::string& rule, const std::string& path, size_t line);

  bool isSilenced(const Finding& finding) const;
  const std::vector<Finding>& all() const { return findings_; }

 private:
  struct Record {
    std::vector<Id> findings;
    std::vector<std::pair<std::string, Id>> blames;
  };

  void found(Id finding);

  size_t load_ = 0;
  std::vector<Finding> findings_;
  std::map<std::tuple<std::string, size_t, size_t, Rule, std::string, std::optional<Id>>, Id> ids_;
  std::map<std::string, Id> blamed_;
  std::map<std::string, Record> records_;
  Record* recording_ = nullptr;
  std::set<std::tuple<std::string, std::string, size_t>> silenced_;
};
