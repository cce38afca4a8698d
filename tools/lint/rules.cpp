// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/rules.h"

#include <stdexcept>

std::string wordFor(Severity severity) {
  switch (severity) {
    case Severity::Note:
      return "note";
    case Severity::Warning:
      return "warning";
    case Severity::Error:
      return "error";
  }
  return {};
}

std::vector<std::string> ruleNames() {
  std::vector<std::string> names;
  for (const RuleFacts& facts : kRules) names.emplace_back(facts.name);
  return names;
}

Rule ruleCalled(const std::string& name) {
  for (const RuleFacts& facts : kRules) {
    if (facts.name == name) return facts.rule;
  }
  throw std::invalid_argument("no rule " + name);
}
