// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/report.h"

#include <algorithm>
#include <stdexcept>
#include <tuple>

#include "tools/text/text.h"
#include "tools/trace/countries.h"

namespace {

// Where there are more, a text names only so many.
constexpr size_t kMostNames = 6;

bool comesBefore(const Finding& a, const Finding& b) {
  const auto order = [](const Finding& finding) {
    return std::tie(finding.place.path, finding.place.line, finding.place.column, finding.rule,
                    finding.message);
  };
  return a.severity != b.severity ? a.severity > b.severity : order(a) < order(b);
}

void sortGroups(std::vector<Group>& groups) {
  for (Group& group : groups) {
    // That there is no block first, then what is missing for it.
    std::sort(group.consequences.begin(), group.consequences.end(),
              [](const Finding& a, const Finding& b) {
                return a.rule != b.rule ? a.rule > b.rule : comesBefore(a, b);
              });
    // What makes a load fail is as severe as that.
    for (const Finding& consequence : group.consequences) {
      group.finding.severity = std::max(group.finding.severity, consequence.severity);
    }
  }
  std::sort(groups.begin(), groups.end(),
            [](const Group& a, const Group& b) { return comesBefore(a.finding, b.finding); });
}

// "40 countries", "any other country", "no country code".
std::vector<std::string> kindsOf(const std::vector<std::string>& loads) {
  std::vector<std::string> special;
  for (const std::string& country : loads) {
    if (country.empty() || country == kOtherCountry) special.push_back(countryTitle(country));
  }
  const size_t countries = loads.size() - special.size();
  const std::string word = countries == 1 ? " country" : " countries";
  if (countries > 0) special.insert(special.begin(), std::to_string(countries) + word);
  return special;
}

std::vector<std::string> countsOf(const LintReport& report) {
  std::vector<std::string> counts;
  for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
    const size_t number = report.count(severity);
    if (number > 0) counts.push_back(counted(number, wordFor(severity)));
  }
  return counts;
}

}  // namespace

size_t LintReport::count(Severity severity) const {
  return static_cast<size_t>(std::count_if(groups.begin(), groups.end(), [&](const Group& group) {
    return group.finding.severity == severity;
  }));
}

Severity LintReport::worst() const {
  return groups.empty() ? Severity::Note : groups.front().finding.severity;
}

std::string LintReport::loadsText(const Finding& finding) const {
  if (loads.size() == 1) return {};
  const std::string all = std::to_string(loads.size()) + " loads";
  if (finding.loads.size() == loads.size()) return " (in all " + all + ")";
  std::vector<std::string> names;
  for (const size_t load : finding.loads) names.push_back(countryTitle(loads[load]));
  const std::string of_all = std::to_string(names.size()) + " of " + all + ": ";
  const bool too_many = names.size() > kMostNames;
  if (too_many) names.resize(kMostNames);
  return " (" + (too_many ? of_all : "") + joined(names, ", ") + (too_many ? ", ..." : "") + ")";
}

std::string LintReport::messageOf(const Finding& finding) const {
  return finding.message + loadsText(finding);
}

std::string LintReport::messageOf(const Finding& consequence, const Finding& cause) const {
  return consequence.message + (consequence.loads == cause.loads ? "" : loadsText(consequence));
}

std::string LintReport::summary() const {
  std::string text = counted(loads.size(), "load") + " (" + joined(kindsOf(loads), ", ") + "): ";
  text += without_block == 0 ? "each gives a block"
                             : std::to_string(without_block) + " without a block";
  text += "; " + (groups.empty() ? "nothing found" : joined(countsOf(*this), ", "));
  if (stale > 0) text += "; " + counted(stale, "baseline line") + " unused";
  if (not_taken.empty()) return text;
  return text + "; not taken for countries: " + joined(not_taken, ", ") +
         " (name them with --countries)";
}

void Exceptions::ignore(const std::string& rule_and_path) {
  const size_t colon = std::min(rule_and_path.find(':'), rule_and_path.size());
  const Rule rule = ruleCalled(rule_and_path.substr(0, colon));
  if (rule == Rule::NoBlock) {
    throw std::runtime_error("no-block cannot be ignored; --countries says which loads count");
  }
  ignored_.emplace_back(rule, colon == rule_and_path.size() ? "" : rule_and_path.substr(colon + 1));
}

void Exceptions::addBaseline(const std::string& name, const std::string& text) {
  const std::vector<std::string> lines = split(text, '\n');
  for (size_t i = 0; i < lines.size(); ++i) {
    if (std::count(lines[i].begin(), lines[i].end(), '\t') != 2) {
      throw std::runtime_error(name + ":" + std::to_string(i + 1) + ": no line of a baseline");
    }
    ++baseline_[lines[i]];
  }
}

bool Exceptions::take(const Finding& finding) {
  for (const auto& [rule, path] : ignored_) {
    if (rule != finding.rule) continue;
    if (path.empty() || path == finding.place.path || path == finding.about) return true;
  }
  const auto line = baseline_.find(baselineLine(finding));
  if (line == baseline_.end() || line->second == 0) return false;
  --line->second;
  return true;
}

size_t Exceptions::unusedLines() const {
  size_t unused = 0;
  for (const auto& [line, count] : baseline_) unused += count;
  return unused;
}

std::vector<Group> grouped(const Findings& findings, Exceptions& exceptions, bool with_notes) {
  const std::vector<Finding>& all = findings.all();
  std::vector<bool> kept;
  for (const Finding& finding : all) {
    const bool left_out = findings.isSilenced(finding) || exceptions.take(finding);
    kept.push_back(!left_out && (with_notes || finding.severity != Severity::Note));
  }
  std::vector<Group> groups;
  std::map<size_t, size_t> group_of;
  // A cause is found before what follows from it.
  for (size_t i = 0; i < all.size(); ++i) {
    if (!kept[i]) continue;
    const bool follows = all[i].cause.has_value() && kept[*all[i].cause];
    if (follows) {
      groups[group_of.at(*all[i].cause)].consequences.push_back(all[i]);
    } else {
      group_of[i] = groups.size();
      groups.push_back({all[i], {}});
    }
  }
  sortGroups(groups);
  return groups;
}

std::string baselineLine(const Finding& finding) {
  const std::string& text = finding.place.source.empty() ? finding.message : finding.place.source;
  return std::string(factsOf(finding.rule).name) + "\t" + printable(finding.place.path) + "\t" +
         printable(text);
}
