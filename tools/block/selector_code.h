// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

struct Selector {
  uint8_t gpio;
  uint8_t level;
};

// The line and level for which the converter has this code; nothing when it has none.
std::optional<Selector> selectorOf(uint8_t code);

bool isSelectorLine(uint8_t gpio);
bool isSelectorLevel(uint8_t level);
