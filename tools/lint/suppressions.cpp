// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/suppressions.h"

#include <algorithm>
#include <stdexcept>

#include "tools/text/text.h"

void Suppressions::ignore(const std::string& rule_and_path) {
  if (ruleCalled(rule_and_path.substr(0, rule_and_path.find(':'))) == Rule::NoBlock) {
    throw std::runtime_error(kAlwaysTold);
  }
  if (EndsWith(rule_and_path, ":")) {
    throw std::runtime_error("--ignore takes RULE or RULE:PATH, not '" + rule_and_path + "'");
  }
  ignored_[rule_and_path] = false;
}

void Suppressions::addBaseline(const std::string& name, const std::string& text) {
  // A version control system may have put carriage returns at the ends.
  const std::vector<std::string> lines =
      linesOf(android::base::StringReplace(text, "\r\n", "\n", true));
  for (size_t i = 0; i < lines.size(); ++i) {
    if (std::count(lines[i].begin(), lines[i].end(), '\t') != 2) {
      throw std::runtime_error(name + ":" + std::to_string(i + 1) + ": no line of a baseline");
    }
    baseline_.insert(lines[i] + "\n");
  }
}

bool Suppressions::take(const Finding& finding, const ShownPath& shown_path) {
  if (finding.rule == Rule::NoBlock) return false;
  const std::string rule = factsOf(finding.rule).name;
  const auto is_ignored = [&](const std::string& path) {
    const auto at = ignored_.find(rule + path);
    return at != ignored_.end() && (at->second = true);
  };
  if (is_ignored("")) return true;
  for (const std::string& path : {finding.place.path, finding.about}) {
    if (path.empty()) continue;
    if (is_ignored(":" + path) || is_ignored(":" + shown_path(path))) return true;
  }
  const auto line = baseline_.find(baselineLine(finding));
  if (line == baseline_.end()) return false;
  baseline_.erase(line);
  return true;
}

std::vector<std::string> Suppressions::unused() const {
  std::vector<std::string> names;
  for (const auto& [name, used] : ignored_) {
    // A rule without a path may be one that the tree keeps.
    if (!used && name.find(':') != name.npos) names.push_back("--ignore " + printable(name));
  }
  if (!baseline_.empty()) names.push_back(counted(baseline_.size(), "baseline line"));
  return names;
}

std::string baselineLine(const Finding& finding) {
  if (finding.rule == Rule::NoBlock) return {};
  const std::string& text = finding.place.source.empty() ? finding.message : finding.place.source;
  return std::string(factsOf(finding.rule).name) + "\t" + printable(finding.place.path) + "\t" +
         printable(text) + "\n";
}
