// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/rules.h"

#include <algorithm>
#include <iterator>

std::string wordFor(Severity severity) {
  constexpr const char* kWords[] = {"note", "warning", "error"};
  return kWords[static_cast<size_t>(severity)];
}

std::vector<std::string> ruleNames() {
  std::vector<std::string> names;
  for (const RuleFacts& facts : kRules) names.emplace_back(facts.name);
  return names;
}

std::optional<Rule> ruleCalled(const std::string& name) {
  const auto* const facts = std::find_if(std::begin(kRules), std::end(kRules),
                                         [&](const RuleFacts& f) { return f.name == name; });
  if (facts == std::end(kRules)) return std::nullopt;
  return static_cast<Rule>(facts - kRules);
}
