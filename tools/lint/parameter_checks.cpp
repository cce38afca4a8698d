// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "tools/lint/checks.h"
#include "tools/text/text.h"

namespace {

Place placeIn(const LoadTrace& trace, const LineRef& ref, size_t column = 1) {
  return {trace.files[ref.file]->path, trace.at(ref).number, column, trace.at(ref).text};
}

// Where the value of the line begins.
Place valuePlace(const LoadTrace& trace, const LineRef& ref) {
  const std::string& text = trace.at(ref).text;
  const size_t after = text.find('=') + 1;
  return placeIn(trace, ref, after + blanksAt(text, after) + 1);
}

void checkWiring(const LoadTrace& trace, const TracedParameter& parameter, Findings& findings) {
  if (parameter.facts == nullptr || parameter.settings.empty()) return;
  const LineRef winner = parameter.settings.back();
  const auto value =
      static_cast<uint8_t>(std::strtoul(trace.at(winner).effect.value.c_str(), nullptr, 10));
  const Role role = parameter.facts->role;
  const auto addFailure = [&](Rule rule, const std::string& message) {
    findings.blame(kOutcome, findings.add(rule, valuePlace(trace, winner), message));
  };
  if (role == Role::SelectorLine && !hasSelector(role, value)) {
    addFailure(Rule::SelectorLine, "no antenna selector uses GPIO " + std::to_string(value) +
                                       ", so the device makes no block: write 6 or 7");
  } else if (role == Role::SelectorLevel && !hasSelector(role, value)) {
    addFailure(Rule::SelectorLevel, "a selector level is 0 or 1, not " + std::to_string(value) +
                                        ": the device makes no block");
  } else if (role == Role::Port && value == UINT8_MAX) {
    findings.add(Rule::Port255, valuePlace(trace, winner),
                 "ports are counted from 1 in the block, so 255 wraps around to 0: write 0 to 254");
  }
}

void checkDuplicates(const LoadTrace& trace, const TracedParameter& parameter, Findings& findings) {
  for (size_t i = 1; i < parameter.settings.size(); ++i) {
    const LineRef& earlier = parameter.settings[i - 1];
    const LineRef& later = parameter.settings[i];
    if (earlier.file != later.file) continue;
    findings.add(Rule::DuplicateKey, placeIn(trace, later),
                 "'" + parameter.key + "' has a value in line " +
                     std::to_string(trace.at(earlier).number) + " already; this one wins");
  }
}

// No line sets these keys: for one reason, or for none that is known.
Findings::Id addMissing(const LoadTrace& trace, const std::vector<std::string>& keys,
                        std::optional<Findings::Id> cause, bool in_many, Findings& findings) {
  // A missing key has no line; it is reported where it can be added.
  const std::string& path =
      cause.has_value() || in_many ? trace.deciding().path : trace.files.back()->path;
  const std::string where = cause.has_value() ? ""
                            : in_many         ? "; add it to one of the files that are listed here"
                                              : "; add it here or in a file before";
  return findings.add(Rule::MissingKey, {path, 1, 1, {}},
                      "no line sets '" + joined(keys, "', '") + "'" + where, {}, cause);
}

// The path file that decided, or the first that exists.
std::string decidingPath(const LoadTrace& trace) {
  if (trace.decided) return trace.deciding().path;
  for (const TracedPathFile& file : trace.path_files) {
    if (file.kind != FileKind::Missing) return file.path;
  }
  return trace.path_files.front().path;
}

std::optional<Findings::Id> checkMissing(const LoadTrace& trace,
                                         const std::set<std::string>& missing_in_many,
                                         Findings& findings) {
  std::map<std::pair<std::optional<Findings::Id>, bool>, std::vector<std::string>> groups;
  for (const std::string& key : trace.missing) {
    const std::optional<Findings::Id> cause = findings.causeOf({key, kAnyKey});
    const bool in_many = missing_in_many.count(key) > 0;
    groups[{cause, in_many}].push_back(key);
  }
  std::optional<Findings::Id> last;  // Those with a cause come after the others.
  for (const auto& [group, keys] : groups) {
    last = addMissing(trace, keys, group.first, group.second, findings);
  }
  return last;
}

}  // namespace

void checkParameters(const LoadTrace& trace, Findings& findings) {
  for (const TracedParameter& parameter : trace.parameters) {
    checkWiring(trace, parameter, findings);
    checkDuplicates(trace, parameter, findings);
  }
}

void checkOutcome(const LoadTrace& trace, const std::set<std::string>& missing_in_many,
                  Findings& findings) {
  std::optional<Findings::Id> cause = checkMissing(trace, missing_in_many, findings);
  if (trace.block.has_value()) return;
  if (!cause.has_value() || trace.unknown) cause = findings.causeOf({kOutcome, kAnyKey});
  findings.add(Rule::NoBlock, {decidingPath(trace), 1, 1, {}}, "no block: " + trace.problem, {},
               cause);
}
