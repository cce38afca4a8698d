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
  OtherAntenna,
  MissingKey,
  NoBlock,
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
  FileSpecial,
  FileUnread,
  ByteOrderMark,
  NotText,
};

struct RuleFacts {
  Rule rule;
  Severity severity;
  const char* name;
  const char* summary;
};

// clang-format off
inline constexpr RuleFacts kRules[] = {
    // Lines that set nothing.
    {Rule::UnknownKey,          Severity::Warning, "unknown-key",           "No parameter has this key"},
    {Rule::LeadingBlank,        Severity::Warning, "leading-blank",         "There is a blank before the key"},
    {Rule::BlankBeforeEqual,    Severity::Warning, "blank-before-equal",    "There is a blank between the key and '='"},
    {Rule::BlankAfterCcc,       Severity::Warning, "blank-after-ccc",       "There is a blank between [CCC] and the key"},
    {Rule::NoEqual,             Severity::Warning, "no-equal",              "Text without '=' that is no comment"},
    // Values.
    {Rule::OutOfRange,          Severity::Error,   "out-of-range",          "The number does not fit its parameter"},
    {Rule::UnreadableValue,     Severity::Error,   "unreadable-value",      "The value cannot be read"},
    {Rule::NumberSpelling,      Severity::Error,   "number-spelling",       "Two C++ libraries read the number differently"},
    {Rule::OctalNumber,         Severity::Warning, "octal-number",          "A leading zero makes the number octal"},
    {Rule::NegativeNumber,      Severity::Error,   "negative-number",       "A negative number wraps around, or ends the file"},
    {Rule::TextAfterValue,      Severity::Warning, "text-after-value",      "Text after the value is not read"},
    {Rule::SelectorLine,        Severity::Error,   "selector-line",         "No selector uses this GPIO line"},
    {Rule::SelectorLevel,       Severity::Error,   "selector-level",        "A selector line has the level 0 or 1"},
    {Rule::Port255,             Severity::Warning, "port-255",              "Port 255 wraps around to 0"},
    // Values set twice or never.
    {Rule::DuplicateKey,        Severity::Warning, "duplicate-key",         "The key is given twice in one file"},
    {Rule::OtherAntenna,        Severity::Note,    "other-antenna",         "The antenna of the key serves no channel in this load"},
    {Rule::MissingKey,          Severity::Error,   "missing-key",           "No line sets the parameter"},
    {Rule::NoBlock,             Severity::Error,   "no-block",              "A load gives no block"},
    // Path files and the files that they name.
    {Rule::PathCr,              Severity::Warning, "path-cr",               "A carriage return is part of the path"},
    {Rule::PathComment,         Severity::Warning, "path-comment",          "Path files have no comments"},
    {Rule::PathBlank,           Severity::Warning, "path-blank",            "Blanks are part of the path"},
    {Rule::PlaceholderMisspelt, Severity::Warning, "placeholder-misspelt",  "The path holds no placeholder, but seems to"},
    {Rule::PlaceholderCapitals, Severity::Warning, "placeholder-capitals",  "The placeholder is in capitals"},
    {Rule::PlaceholderTwice,    Severity::Warning, "placeholder-twice",     "Only the first placeholder is replaced"},
    {Rule::CountryFallback,     Severity::Note,    "country-fallback",      "The default file is read for the country"},
    {Rule::PathFileHides,       Severity::Warning, "path-file-hides",       "Later path files are never read"},
    {Rule::PathFileMissing,     Severity::Error,   "path-file-missing",     "There is no path file"},
    {Rule::FileMissing,         Severity::Warning, "file-missing",          "There is no calibration file of this path"},
    {Rule::FileDirectory,       Severity::Warning, "file-directory",        "The file is a directory"},
    {Rule::FileEmpty,           Severity::Warning, "file-empty",            "The file is empty"},
    {Rule::FileUnreadable,      Severity::Error,   "file-unreadable",       "The file exists, but cannot be read"},
    {Rule::FileSpecial,         Severity::Error,   "file-special",          "The file is a pipe, a socket or a device"},
    {Rule::FileUnread,          Severity::Warning, "file-unread",           "No load reads the file, but seems meant to"},
    {Rule::ByteOrderMark,       Severity::Warning, "byte-order-mark",       "The file starts with a byte order mark"},
    {Rule::NotText,             Severity::Warning, "not-text",              "The file holds bytes that are no text"},
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
