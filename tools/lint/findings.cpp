// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/findings.h"

void Findings::beginLoad(size_t load) {
  load_ = load;
  blamed_.clear();
}

Findings::Id Findings::add(Rule rule, const Place& place, const std::string& message,
                           const std::string& about, std::optional<Id> cause) {
  // Only the first cause is shown: what follows from a consequence follows from that.
  if (cause.has_value() && findings_[*cause].cause.has_value()) cause = findings_[*cause].cause;
  const auto [at, is_new] = ids_.try_emplace(
      {place.path, place.line, place.column, rule, message, cause}, findings_.size());
  if (is_new) {
    findings_.push_back({place, rule, factsOf(rule).severity, message, about, {}, cause});
  }
  found(at->second);
  return at->second;
}

void Findings::once(const std::string& what, const std::function<void()>& check) {
  const auto [at, is_new] = records_.try_emplace(what);
  if (is_new) {
    recording_ = &at->second;
    check();
    recording_ = nullptr;
    return;
  }
  for (const Id finding : at->second.findings) found(finding);
  for (const auto& [key, finding] : at->second.blames) blame(key, finding);
}

void Findings::blame(const std::string& key, Id finding) {
  blamed_.emplace(key, finding);
  if (recording_ != nullptr) recording_->blames.emplace_back(key, finding);
}

std::optional<Findings::Id> Findings::causeOf(const std::vector<std::string>& keys) const {
  for (const std::string& key : keys) {
    const auto at = blamed_.find(key);
    if (at != blamed_.end()) return at->second;
  }
  return std::nullopt;
}

void Findings::takeAsErrors(Rule rule) {
  for (Finding& finding : findings_) {
    if (finding.rule == rule) finding.severity = Severity::Error;
  }
}

void Findings::silence(const std::string& rule, const std::string& path, size_t line) {
  silenced_.emplace(rule, path, line);
}

bool Findings::isSilenced(const Finding& finding) const {
  return silenced_.count({factsOf(finding.rule).name, finding.place.path, finding.place.line}) > 0;
}

void Findings::found(Id finding) {
  std::vector<size_t>& loads = findings_[finding].loads;
  if (loads.empty() || loads.back() != load_) loads.push_back(load_);
  if (recording_ != nullptr) recording_->findings.push_back(finding);
}
