// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

enum class Severity { Note, Warning, Error };

// The severity's word: "note", "warning", "error".
std::string wordFor(Severity severity);

struct Rule {
  const char* name;
  Severity severity;
  const char* summary;
};

// All rules, in the order in which the documentation has them.
const std::vector<Rule>& rules();

std::vector<std::string> ruleNames();

// The rule's index in `rules`. The name must be one of a rule.
size_t ruleIndex(const std::string& name);
