// SPDX-License-Identifier: Apache-2.0
#include "schema/antenna_selection_pattern.h"

#include "schema/tree.h"

// clang-format off
template <typename T>
std::shared_ptr<AstPrefix> AntennaSelectionPattern::buildAntSelectionParams(
    std::string const& channelName, T* target) {
  // Depth 0, not 2 as in a whole calibration; the tag is the same as there.
  return group(channelName, 0, 10, {
      param("antenna_selection", 1, std::nullopt, target),
  });
}

AntennaSelectionPattern::AntennaSelectionPattern()
    : AstRoot("", std::nullopt, 0, {
          buildAntSelectionParams("ch5", &selected.ch5),
          buildAntSelectionParams("ch9", &selected.ch9),
      }, 0) {}
// clang-format on

template std::shared_ptr<AstPrefix> AntennaSelectionPattern::buildAntSelectionParams<std::string>(
    std::string const& channelName, std::string* target);

AntennaSelectionPattern::~AntennaSelectionPattern() = default;

antenna_selection AntennaSelectionPattern::toAntennaSelection(EndiannessConversion conversion) {
  toBuffer(conversion);
  return selected;
}
