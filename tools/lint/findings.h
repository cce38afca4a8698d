// SPDX-License-Identifier: Apache-2.0
#pragma once

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
  size_t line = 1;          // Counted from 1.
  size_t column = 1;        // In bytes, counted from 1.
  std::string source = {};  // The whole line.
};

// What a finding explains, besides keys that no line sets: any of them, that there is no block,
// and that the converter refuses a selector.
constexpr char kAnyKey[] = "*";
constexpr char kOutcome[] = "=";
constexpr char kRefusal[] = "!";

struct Finding {
  Rule rule;
  Place place;
  std::string message;
  std::vector<std::string> explains = {};  // Why no line sets these keys: see above.
  std::string about = {};                  // The file that it speaks of, if not the place's.
  std::optional<size_t> cause = {};        // The finding from which it follows.
  bool once = false;                       // Lines of a file that have it are told of at the first.
  Severity severity = factsOf(rule).severity;
  std::set<size_t> loads = {};  // In which it was found.
};

// Gathers what the rules find. The same finding of several loads is one.
class Findings {
 public:
  using Id = size_t;

  // From here on, findings belong to these loads.
  void setLoads(const std::vector<size_t>& loads) { loads_ = loads; }

  Id add(Finding finding);

  // The first finding of the load that explains one of the keys, tried in their order.
  std::optional<Id> causeOf(size_t load, const std::vector<std::string>& keys) const;

  void takeAsErrors(Rule rule);

  // A comment says that findings of this rule in this line are to be left out.
  void silence(Rule rule, const std::string& path, size_t line);
  bool isSilenced(const Finding& finding) const;

  const std::vector<Finding>& all() const { return findings_; }

 private:
  std::vector<size_t> loads_;
  std::vector<Finding> findings_;
  std::map<std::tuple<std::string, size_t, size_t, Rule, std::string, std::optional<Id>>, Id> ids_;
  std::map<std::pair<size_t, std::string>, Id> explained_;
  std::set<std::tuple<Rule, std::string, size_t>> silenced_;
};
