// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <vector>

enum class Severity { Note, Warning, Error };

// The severity's word: "note", "warning", "error".
std::string wordFor(Severity severity);

// In the order of docs/lint_rules.md.
enum class Rule {
  // Lines that set nothing.
  UnknownKey,
  LeadingBlank,
  BlankBeforeEqual,
  BlankAfterCcc,
  NoEqual,
  // Values.
  OutOfRange,
  UnreadableValue,
  NumberSpelling,
  OctalNumber,
  NegativeNumber,
  TextAfterValue,
  SelectorLine,
  SelectorLevel,
  Port255,
  // Values set twice or never.
  DuplicateKey,
  OverriddenValue,
  MissingKey,
  // Path files and the files that they name.
  PathCr,
  PathComment,
  PathBlank,
  PlaceholderMisspelt,
  PlaceholderCapitals,
  PlaceholderTwice,
  CountryFallback,
  PathFileHides,
  PathFileMissing,
  FileMissing,
  FileDirectory,
  FileEmpty,
  FileUnreadable,
  NotText,
};

struct RuleFacts {
  Rule rule;
  const char* name;
  Severity severity;
  const char* summary;
};

// clang-format off
inline constexpr RuleFacts kRules[] = {
    // Lines that set nothing.
    {Rule::UnknownKey,          "unknown-key",          Severity::Warning, "No parameter has this key"},
    {Rule::LeadingBlank,        "leading-blank",        Severity::Warning, "There is a blank before the key"},
    {Rule::BlankBeforeEqual,    "blank-before-equal",   Severity::Warning, "There is a blank between the key and '='"},
    {Rule::BlankAfterCcc,       "blank-after-ccc",      Severity::Warning, "There is a blank between [CCC] and the key"},
    {Rule::NoEqual,             "no-equal",             Severity::Warning, "Text without '=' that is no comment"},
    // Values.
    {Rule::OutOfRange,          "out-of-range",         Severity::Error,   "The number does not fit its parameter"},
    {Rule::UnreadableValue,     "unreadable-value",     Severity::Error,   "The value cannot be read"},
    {Rule::NumberSpelling,      "number-spelling",      Severity::Error,   "Two C++ libraries read the number differently"},
    {Rule::OctalNumber,         "octal-number",         Severity::Warning, "A leading zero makes the number octal"},
    {Rule::NegativeNumber,      "negative-number",      Severity::Warning, "A negative number wraps around"},
    {Rule::TextAfterValue,      "text-after-value",     Severity::Warning, "Text after the value is not read"},
    {Rule::SelectorLine,        "selector-line",        Severity::Error,   "No selector uses this GPIO line"},
    {Rule::SelectorLevel,       "selector-level",       Severity::Error,   "A selector line has the level 0 or 1"},
    {Rule::Port255,             "port-255",             Severity::Warning, "Port 255 wraps around to 0"},
    // Values set twice or never.
    {Rule::DuplicateKey,        "duplicate-key",        Severity::Warning, "The key is given twice in one file"},
    {Rule::OverriddenValue,     "overridden-value",     Severity::Note,    "A later file sets the value again"},
    {Rule::MissingKey,          "missing-key",          Severity::Error,   "No line sets the parameter"},
    // Path files and the files that they name.
    {Rule::PathCr,              "path-cr",              Severity::Warning, "A carriage return is part of the path"},
    {Rule::PathComment,         "path-comment",         Severity::Warning, "Path files have no comments"},
    {Rule::PathBlank,           "path-blank",           Severity::Warning, "Blanks are part of the path"},
    {Rule::PlaceholderMisspelt, "placeholder-misspelt", Severity::Warning, "The path holds no placeholder, but seems to"},
    {Rule::PlaceholderCapitals, "placeholder-capitals", Severity::Warning, "The placeholder is in capitals"},
    {Rule::PlaceholderTwice,    "placeholder-twice",    Severity::Warning, "Only the first placeholder is replaced"},
    {Rule::CountryFallback,     "country-fallback",     Severity::Note,    "The default file is read for the country"},
    {Rule::PathFileHides,       "path-file-hides",      Severity::Warning, "Later path files are never read"},
    {Rule::PathFileMissing,     "path-file-missing",    Severity::Error,   "There is no path file"},
    {Rule::FileMissing,         "file-missing",         Severity::Warning, "There is no calibration file of this path"},
    {Rule::FileDirectory,       "file-directory",       Severity::Warning, "The file is a directory"},
    {Rule::FileEmpty,           "file-empty",           Severity::Warning, "The file is empty"},
    {Rule::FileUnreadable,      "file-unreadable",      Severity::Warning, "The file cannot be read"},
    {Rule::NotText,             "not-text",             Severity::Warning, "The file holds bytes that are no text"},
};
// clang-format on

constexpr bool areInTheOrderOfTheirEnumeration() {
  size_t index = 0;
  for (const RuleFacts& facts : kRules) {
    if (facts.rule != static_cast<Rule>(index++)) return false;
  }
  return true;
}
static_assert(areInTheOrderOfTheirEnumeration());

constexpr const RuleFacts& factsOf(Rule rule) {
  return kRules[static_cast<size_t>(rule)];
}

std::vector<std::string> ruleNames();

// The rule of this name, which must be one.
Rule ruleCalled(const std::string& name);
