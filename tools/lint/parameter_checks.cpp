// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>
#include <map>

#include "tools/lint/checks.h"
#include "tools/text/text.h"

namespace {

Place placeOf(const LoadTrace& trace, const LineRef& ref, size_t at = 0) {
  return placeIn(trace.files[ref.file]->path, trace.at(ref), at);
}

void checkWiring(const LoadTrace& trace, const TracedParameter& parameter, Findings& findings) {
  if (parameter.facts == nullptr || parameter.settings.empty()) return;
  const TracedLine& line = trace.at(parameter.settings.back());
  const Place place = placeOf(trace, parameter.settings.back(), trace.valueIn(line));
  const auto value = std::strtoul(line.effect.value.c_str(), nullptr, 10);
  const Role role = parameter.facts->role;
  if (role == Role::Port && value == UINT8_MAX) {
    findings.add(
        {Rule::Port255, place,
         "ports are counted from 1 in the block, so 255 wraps around to 0: write 0 to 254"});
  } else if (!hasSelector(role, value)) {
    const bool is_line = role == Role::SelectorLine;
    findings.add({Rule::Selector,
                  place,
                  "no antenna selector has the " + std::string(is_line ? "GPIO line " : "level ") +
                      std::to_string(value) + ", so there is no block: write " +
                      (is_line ? "6 or 7" : "0 or 1"),
                  {kRefusal}});
  }
}

void checkDuplicates(const LoadTrace& trace, const TracedParameter& parameter, Findings& findings) {
  for (size_t i = 1; i < parameter.settings.size(); ++i) {
    const LineRef& earlier = parameter.settings[i - 1];
    const LineRef& later = parameter.settings[i];
    if (earlier.file != later.file) continue;
    findings.add({Rule::DuplicateKey, placeOf(trace, later),
                  "'" + parameter.key + "' is set in line " +
                      std::to_string(trace.at(earlier).number) +
                      " already, and this value wins: remove one of the two lines"});
  }
}

// The path file that decided, or the first that exists.
std::string decidingPath(const LoadTrace& trace) {
  if (trace.decided) return trace.deciding().path;
  for (const TracedPathFile& file : trace.path_files) {
    if (file.kind != FileKind::Missing) return file.path;
  }
  return trace.path_files.front().path;
}

// The last finding, if any key is missing.
std::optional<Findings::Id> checkMissing(const LoadTrace& trace, size_t load, Findings& findings) {
  std::map<std::optional<Findings::Id>, std::vector<std::string>> keys_by_cause;
  for (const std::string& key : trace.missing) {
    keys_by_cause[findings.causeOf(load, {key, kAnyKey})].push_back(key);
  }
  std::optional<Findings::Id> last;  // Those with a cause come after the others.
  for (const auto& [cause, keys] : keys_by_cause) {
    const std::string line = keys.size() == 1 ? keys[0] + "=VALUE" : "KEY=VALUE for each";
    const std::string advice =
        cause.has_value() ? "" : ": add a line " + line + " to a file that is listed here";
    last = findings.add({Rule::MissingKey,
                         {decidingPath(trace)},  // A missing key has no line.
                         "no line sets '" + Join(keys, "', '") + "'" + advice,
                         {},
                         {},
                         cause});
  }
  return last;
}

// The antenna that unknown keys seem to have in place of this one; empty where a line has this one,
// read or not.
std::string antennaMeantBy(const std::string& name, const LoadTrace& trace) {
  std::vector<std::string> others;
  bool is_used = false;
  trace.forEachLine([&](const LineRef&, const TracedLine& line) {
    is_used = is_used || StartsWith(withoutBlanks(line.text), name + ".");
    if (!is_used && line.effect.kind == LineEffect::Kind::Dropped)
      others.push_back(line.text.substr(0, line.text.find('.')));
  });
  return is_used ? "" : nearestOf(name, others);
}

}  // namespace

antenna_selection checkSelection(const LoadTrace& trace, Findings& findings) {
  antenna_selection meant = trace.selection;
  if (!trace.selected || trace.unknown) return meant;
  auto selection = trace.parameters.begin();  // That of channel 5; that of channel 9 is the next.
  for (std::string* const name : {&meant.ch5, &meant.ch9}) {
    const LineRef& ref = (selection++)->settings.back();
    std::vector<std::string> keys;
    for (const TracedParameter& parameter : trace.parameters) {
      if (StartsWith(parameter.key, *name + ".")) keys.push_back(parameter.key);
    }
    const std::string nearest = antennaMeantBy(*name, trace);
    if (nearest.empty()) continue;
    findings.add({Rule::MissingKey, placeOf(trace, ref, trace.valueIn(trace.at(ref))),
                  "no line has a key of antenna '" + *name + "'; did you mean '" + nearest + "'?",
                  keys});
    *name = nearest;
  }
  return meant;
}

void checkParameters(const LoadTrace& trace, Findings& findings) {
  // The converter looks at channel 9 before channel 5 and at a line before its level, which is the
  // tree's order reversed: the first bad selector is the one that it refuses.
  for (auto i = trace.parameters.rbegin(); i != trace.parameters.rend(); ++i) {
    checkWiring(trace, *i, findings);
    checkDuplicates(trace, *i, findings);
  }
}

void checkOutcome(const LoadTrace& trace, size_t load, Findings& findings) {
  std::optional<Findings::Id> cause = checkMissing(trace, load, findings);
  if (trace.block.has_value()) return;
  if (!cause.has_value()) {
    cause = findings.causeOf(load, {trace.refused ? kRefusal : kOutcome, kAnyKey});
  }
  findings.add({Rule::NoBlock, {decidingPath(trace)}, "no block: " + trace.problem, {}, {}, cause});
}
