// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/findings.h"

Findings::Id Findings::add(Finding finding) {
  std::optional<Id>& cause = finding.cause;
  // Only the first cause is shown: what follows from a consequence follows from that.
  if (cause.has_value() && findings_[*cause].cause.has_value()) cause = findings_[*cause].cause;
  const Place& place = finding.place;
  // A comment speaks of its line alone.
  const bool once = finding.once && !isSilenced(finding);
  const size_t line = once ? 0 : place.line;
  const size_t column = once ? 0 : place.column;
  const auto [at, is_new] = ids_.try_emplace(
      {place.path, line, column, finding.rule, finding.message, cause}, findings_.size());
  const Id id = at->second;
  for (const size_t load : loads_) {
    for (const std::string& key : finding.explains) explained_.try_emplace({load, key}, id);
  }
  if (is_new) findings_.push_back(std::move(finding));
  findings_[id].loads.insert(loads_.begin(), loads_.end());
  return id;
}

std::optional<Findings::Id> Findings::causeOf(size_t load,
                                              const std::vector<std::string>& keys) const {
  for (const std::string& key : keys) {
    const auto at = explained_.find({load, key});
    if (at != explained_.end()) return at->second;
  }
  return std::nullopt;
}

void Findings::takeAsErrors(Rule rule) {
  for (Finding& finding : findings_) {
    if (finding.rule == rule) finding.severity = Severity::Error;
  }
}

void Findings::silence(Rule rule, const std::string& path, size_t line) {
  silenced_.emplace(rule, path, line);
}

bool Findings::isSilenced(const Finding& finding) const {
  return silenced_.count({finding.rule, finding.place.path, finding.place.line}) > 0;
}
