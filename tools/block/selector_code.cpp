// SPDX-License-Identifier: Apache-2.0
#include "tools/block/selector_code.h"

#include <stdexcept>
#include <vector>

#include "output/calib_converter.h"

namespace {

std::optional<uint8_t> codeOf(uint8_t gpio, uint8_t level) {
  try {
    return CalibConverter::computeAntennaSelection(gpio, level);
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
}

// All that the converter takes, found by asking it: its rule is not repeated here.
std::vector<Selector> findSelectors() {
  std::vector<Selector> found;
  for (unsigned gpio = 0; gpio <= 0xFF; ++gpio) {
    // A line for which even level 0 has no code is none.
    const unsigned levels = codeOf(static_cast<uint8_t>(gpio), 0).has_value() ? 0x100 : 0;
    for (unsigned level = 0; level < levels; ++level) {
      const Selector selector{static_cast<uint8_t>(gpio), static_cast<uint8_t>(level)};
      if (codeOf(selector.gpio, selector.level).has_value()) found.push_back(selector);
    }
  }
  return found;
}

const std::vector<Selector>& selectors() {
  static const std::vector<Selector> all = findSelectors();
  return all;
}

}  // namespace

std::optional<Selector> selectorOf(uint8_t code) {
  for (const Selector& selector : selectors()) {
    if (codeOf(selector.gpio, selector.level) == code) return selector;
  }
  return std::nullopt;
}

bool isSelectorLine(uint8_t gpio) {
  for (const Selector& selector : selectors()) {
    if (selector.gpio == gpio) return true;
  }
  return false;
}

bool isSelectorLevel(uint8_t level) {
  for (const Selector& selector : selectors()) {
    if (selector.level == level) return true;
  }
  return false;
}
