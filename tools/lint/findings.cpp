// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/findings.h"

#include <algorithm>
#include <tuple>

namespace {

auto orderOf(const Finding& finding) {
  return std::tie(finding.place.path, finding.place.line, finding.place.column, finding.rule,
                  finding.message);
}

}  // namespace

void Findings::beginLoad(const std::string& country) {
  country_ = country;
  loads_.insert(country);
}

void Findings::add(Rule rule, const Place& place, const std::string& message) {
  Finding finding{place, rule, factsOf(rule).severity, message, {country_}};
  const auto at =
      std::lower_bound(findings_.begin(), findings_.end(), finding,
                       [](const Finding& a, const Finding& b) { return orderOf(a) < orderOf(b); });
  if (at != findings_.end() && orderOf(*at) == orderOf(finding)) {
    at->countries.insert(country_);
  } else {
    findings_.insert(at, std::move(finding));
  }
}

void Findings::showPathsBelow(const std::string& root) {
  if (root.empty()) return;
  const std::string folder = root.substr(0, root.find_last_not_of('/') + 1) + "/";
  for (Finding& finding : findings_) {
    std::string& path = finding.place.path;
    path.replace(0, std::min(path.find_first_not_of("./"), path.size()), folder);
  }
}

void Findings::takeAsErrors(Rule rule) {
  for (Finding& finding : findings_) {
    if (finding.rule == rule) finding.severity = Severity::Error;
  }
}

void Findings::ignore(Rule rule) {
  findings_.erase(std::remove_if(findings_.begin(), findings_.end(),
                                 [&](const Finding& finding) { return finding.rule == rule; }),
                  findings_.end());
}

std::vector<std::string> Findings::countriesToName(const Finding& finding) const {
  if (finding.countries == loads_) return {};
  return {finding.countries.begin(), finding.countries.end()};
}
