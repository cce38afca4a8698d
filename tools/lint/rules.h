// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

enum class Severity { Note, Warning, Error };

// The severity's word: "note", "warning", "error".
std::string wordFor(Severity severity);

// In the order of docs/lint_rules.md: each rule's severity, name and summary.
// clang-format off
#define LINT_RULES(RULE)                                                                                    \
  /* Lines that set nothing. */                                                                             \
  RULE(UnknownKey,          Warning, "unknown-key",           "No parameter has this key")                  \
  RULE(BlankInKey,          Warning, "blank-in-key",          "There is a blank before the '='")            \
  RULE(NoEqual,             Warning, "no-equal",              "Text without '=' that is no comment")        \
  RULE(UnknownRule,         Warning, "unknown-rule",          "A comment names no rule to be ignored")       \
  /* Values. */                                                                                             \
  RULE(OutOfRange,          Error,   "out-of-range",          "The number does not fit its parameter")      \
  RULE(UnreadableValue,     Error,   "unreadable-value",      "The value cannot be read")                   \
  RULE(NumberSpelling,      Error,   "number-spelling",       "Two C++ libraries read the number differently") \
  RULE(OctalNumber,         Warning, "octal-number",          "A leading zero makes the number octal")      \
  RULE(NegativeNumber,      Error,   "negative-number",       "A negative number wraps around, or ends the file") \
  RULE(TextAfterValue,      Warning, "text-after-value",      "Text after the value is not read")           \
  RULE(Selector,            Error,   "selector",              "No antenna selector has this line or level") \
  RULE(Port255,             Warning, "port-255",              "Port 255 wraps around to 0")                 \
  /* Values set twice or never. */                                                                          \
  RULE(DuplicateKey,        Warning, "duplicate-key",         "The key is given twice in one file")         \
  RULE(OtherAntenna,        Note,    "other-antenna",         "The load selects another antenna than the key's") \
  RULE(MissingKey,          Error,   "missing-key",           "No line sets the parameter")                 \
  RULE(NoBlock,             Error,   "no-block",              "A load gives no block")                      \
  /* Path files and the files that they name. */                                                            \
  RULE(PathCr,              Warning, "path-cr",               "A carriage return is part of the path")      \
  RULE(PathComment,         Warning, "path-comment",          "Path files have no comments")                \
  RULE(PathBlank,           Warning, "path-blank",            "Blanks and quotes are part of the path")     \
  RULE(Placeholder,         Warning, "placeholder",           "The path holds no placeholder, but seems to") \
  RULE(PlaceholderTwice,    Warning, "placeholder-twice",     "Only the first placeholder is replaced")     \
  RULE(CountryFallback,     Note,    "country-fallback",      "The default file is read for the country")   \
  RULE(PathFileHides,       Warning, "path-file-hides",       "Later path files are never read")            \
  RULE(PathFileMissing,     Error,   "path-file-missing",     "There is no path file")                      \
  RULE(FileMissing,         Warning, "file-missing",          "There is no calibration file of this path")  \
  RULE(FileDirectory,       Warning, "file-directory",        "The file is a directory")                    \
  RULE(FileEmpty,           Warning, "file-empty",            "The file is empty")                          \
  RULE(FileUnreadable,      Error,   "file-unreadable",       "The file exists, but cannot be read")        \
  RULE(FileSpecial,         Error,   "file-special",          "The file is a pipe, a socket or a device")   \
  RULE(FileUnread,          Warning, "file-unread",           "No load reads the file, though one may be meant to") \
  RULE(ByteOrderMark,       Warning, "byte-order-mark",       "The file starts with a byte order mark")     \
  RULE(NotText,             Warning, "not-text",              "The file holds bytes that are no text")
// clang-format on

#define RULE(rule, ...) rule,
enum class Rule { LINT_RULES(RULE) };
#undef RULE

struct RuleFacts {
  Severity severity;
  const char* name;
  const char* summary;
};

inline constexpr RuleFacts kRules[] = {
#define RULE(rule, severity, ...) {Severity::severity, __VA_ARGS__},
    LINT_RULES(RULE)
#undef RULE
};

constexpr const RuleFacts& factsOf(Rule rule) {
  return kRules[static_cast<size_t>(rule)];
}

std::vector<std::string> ruleNames();

// The rule of this name; nothing when there is none.
std::optional<Rule> ruleCalled(const std::string& name);
