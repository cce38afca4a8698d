// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <istream>
#include <limits>

// Extracts a number from 0 to 255 in the stream's base, after any white space. A stream's own
// extraction of an 8-bit value would take one character. Sets the fail state for anything else.
inline std::istream& extractByte(std::istream& input, uint8_t& value) {
  uint16_t number = 0;
  input >> number;
  if (number > std::numeric_limits<uint8_t>::max()) input.setstate(std::ios_base::failbit);
  value = static_cast<uint8_t>(number);
  return input;
}
