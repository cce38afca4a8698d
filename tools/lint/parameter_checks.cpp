// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "tools/lint/checks.h"
#include "tools/text/text.h"

namespace {

// Where the value of the line begins.
Place valuePlace(const LoadTrace& trace, const LineRef& ref) {
  const std::string& text = trace.at(ref).text;
  const size_t after = text.find('=') + 1;
  return placeIn(trace, ref, after + blanksAt(text, after) + 1);
}

bool isAnySelectors(uint8_t Selector::*member, uint8_t value) {
  return std::any_of(std::begin(kSelectors), std::end(kSelectors),
                     [&](const Selector& selector) { return selector.*member == value; });
}

void checkWiring(const LoadTrace& trace, const TracedParameter& parameter, Findings& findings) {
  if (parameter.facts == nullptr || parameter.settings.empty()) return;
  const LineRef winner = parameter.settings.back();
  const auto value =
      static_cast<uint8_t>(std::strtoul(trace.at(winner).effect.value.c_str(), nullptr, 10));
  const Role role = parameter.facts->role;
  if (role == Role::SelectorLine && !isAnySelectors(&Selector::line, value)) {
    findings.add(Rule::SelectorLine, valuePlace(trace, winner),
                 "GPIO " + std::to_string(value) +
                     " is no selector line: the conversion fails on the device");
  } else if (role == Role::SelectorLevel && !isAnySelectors(&Selector::level, value)) {
    findings.add(Rule::SelectorLevel, valuePlace(trace, winner),
                 std::to_string(value) + " is no level: the conversion fails on the device");
  } else if (role == Role::Port && value == UINT8_MAX) {
    findings.add(Rule::Port255, valuePlace(trace, winner),
                 "ports are counted from 1 in the block, so 255 wraps around to 0");
  }
}

void checkOverridden(const LoadTrace& trace, const TracedParameter& parameter, Findings& findings) {
  for (size_t i = 1; i < parameter.settings.size(); ++i) {
    const LineRef& earlier = parameter.settings[i - 1];
    const LineRef& later = parameter.settings[i];
    if (earlier.file == later.file) {
      findings.add(Rule::DuplicateKey, placeIn(trace, later),
                   "'" + parameter.key + "' has a value in line " +
                       std::to_string(trace.at(earlier).number) + " already; this one wins");
    } else {
      findings.add(Rule::OverriddenValue, placeIn(trace, earlier),
                   "'" + parameter.key + "' is set again in " + trace.placeText(later));
    }
  }
}

void checkMissing(const LoadTrace& trace, Findings& findings) {
  // A missing key has no line; it is reported at the last file, where it can be added.
  const Place place{trace.files.back().path, 1, 1, {}};
  for (const std::string& key : trace.missing) {
    findings.add(Rule::MissingKey, place,
                 "no line sets '" + key + "', neither here nor in the files before");
  }
}

}  // namespace

void checkParameters(const LoadTrace& trace, Findings& findings) {
  for (const TracedParameter& parameter : trace.parameters) {
    checkWiring(trace, parameter, findings);
    checkOverridden(trace, parameter, findings);
  }
  if (trace.decided) checkMissing(trace, findings);
}
