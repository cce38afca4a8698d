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

// clang-format off
const std::vector<Rule>& rules() {
  static const std::vector<Rule> all = {
      // Lines that set nothing.
      {"unknown-key",          Severity::Warning, "No parameter has this key"},
      {"leading-blank",        Severity::Warning, "A blank stands before the key"},
      {"blank-before-equal",   Severity::Warning, "A blank stands between key and '='"},
      {"blank-after-ccc",      Severity::Warning, "A blank stands between [CCC] and the key"},
      {"no-equal",             Severity::Warning, "Text without '=' that is no comment"},
      // Values.
      {"out-of-range",         Severity::Error,   "The number does not fit its parameter"},
      {"unreadable-value",     Severity::Error,   "There is no value of the parameter's kind"},
      {"number-spelling",      Severity::Error,   "Two C++ libraries read the number differently"},
      {"octal-number",         Severity::Warning, "A leading zero makes the number octal"},
      {"negative-number",      Severity::Warning, "A negative number wraps around"},
      {"text-after-value",     Severity::Warning, "Text after the value is not read"},
      {"selector-line",        Severity::Error,   "No selector can be on this GPIO line"},
      {"selector-level",       Severity::Error,   "No selector line has this level"},
      {"port-255",             Severity::Warning, "Port 255 wraps around to 0"},
      // Lines among each other.
      {"duplicate-key",        Severity::Warning, "The key is given twice in one file"},
      {"overridden-value",     Severity::Note,    "A later file sets the value again"},
      {"missing-key",          Severity::Error,   "No line sets the parameter"},
      // Path files and the files that they name.
      {"path-cr",              Severity::Warning, "A carriage return is part of the path"},
      {"path-comment",         Severity::Warning, "Path files have no comments"},
      {"path-blank",           Severity::Warning, "Blanks are part of the path"},
      {"placeholder-misspelt", Severity::Warning, "The path holds no placeholder, but seems to"},
      {"placeholder-capitals", Severity::Warning, "The placeholder is written in capitals"},
      {"placeholder-twice",    Severity::Warning, "Only the first placeholder is replaced"},
      {"country-fallback",     Severity::Note,    "The default file serves the country"},
      {"path-file-hides",      Severity::Warning, "A path file hides those after it"},
      {"path-file-missing",    Severity::Error,   "There is no path file"},
      {"file-missing",         Severity::Warning, "There is no calibration file of this path"},
      {"file-directory",       Severity::Warning, "The file is a directory"},
      {"file-empty",           Severity::Warning, "The file is empty"},
      {"file-unreadable",      Severity::Warning, "The file cannot be read"},
      {"not-text",             Severity::Warning, "The file holds bytes that are no text"},
  };
  return all;
}
// clang-format on

std::vector<std::string> ruleNames() {
  std::vector<std::string> names;
  for (const Rule& rule : rules()) names.emplace_back(rule.name);
  return names;
}

size_t ruleIndex(const std::string& name) {
  for (size_t i = 0; i < rules().size(); ++i) {
    if (rules()[i].name == name) return i;
  }
  throw std::invalid_argument("no rule " + name);
}
