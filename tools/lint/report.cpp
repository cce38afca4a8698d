// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/report.h"

#include <algorithm>
#include <tuple>

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

// "1 error, 2 warnings".
std::string countsOf(const std::vector<Group>& groups) {
  std::vector<std::string> counts;
  for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
    const auto number = std::count_if(groups.begin(), groups.end(), [&](const Group& group) {
      return group.finding.severity == severity;
    });
    if (number > 0) counts.push_back(counted(static_cast<size_t>(number), wordFor(severity)));
  }
  return counts.empty() ? "nothing found" : Join(counts, ", ");
}

std::string loadsText(const LintReport& report, const Finding& finding) {
  if (report.loads.size() == 1) return {};
  const size_t all = report.loads.size();
  if (finding.loads.size() == all) return " (in " + allLoads(all) + ")";
  std::vector<std::string> names;
  for (const size_t load : finding.loads) names.push_back(countryTitle(report.loads[load]));
  if (names.size() <= kMostNames) return " (" + Join(names, ", ") + ")";
  names.resize(kMostNames);
  return StringPrintf(" (%zu of %zu loads: %s, ...)", finding.loads.size(), all,
                      Join(names, ", ").c_str());
}

}  // namespace

std::string LintReport::messageOf(const Finding& finding, const Finding* cause) const {
  const bool has_loads = cause == nullptr || cause->loads != finding.loads;
  return printable(finding.message + (has_loads ? loadsText(*this, finding) : ""));
}

std::string LintReport::wholeMessageOf(const Group& group) const {
  std::string message = messageOf(group.finding);
  for (const Finding& consequence : group.consequences) {
    message += "; leads to: " + messageOf(consequence, &group.finding);
  }
  return message;
}

std::string LintReport::summary() const {
  std::string text = counted(loads.size(), "load") + " (" + Join(kindsOf(loads), ", ") + "): ";
  text += without_block == 0 ? "each gives a block"
                             : std::to_string(without_block) + " without a block";
  text += "; " + countsOf(groups);
  if (!unused.empty()) text += "; unused: " + Join(unused, ", ");
  return text + (not_taken.empty() ? "" : "; " + notTakenText(not_taken));
}

std::vector<Group> grouped(const Findings& findings, Suppressions& suppressions,
                           const ShownPath& shown_path, bool with_notes) {
  const std::vector<Finding>& all = findings.all();
  std::vector<Group> groups;
  std::map<size_t, size_t> group_of;
  // A cause is found before what follows from it.
  for (size_t i = 0; i < all.size(); ++i) {
    const bool left_out = findings.isSilenced(all[i]) || suppressions.take(all[i], shown_path);
    if (left_out || (!with_notes && all[i].severity == Severity::Note)) continue;
    const auto cause = all[i].cause.has_value() ? group_of.find(*all[i].cause) : group_of.end();
    if (cause != group_of.end()) {
      groups[cause->second].consequences.push_back(all[i]);
    } else {
      // Stands in for a cause that is left out.
      group_of[all[i].cause.value_or(i)] = groups.size();
      groups.push_back({all[i], {}});
    }
  }
  sortGroups(groups);
  return groups;
}
