// SPDX-License-Identifier: Apache-2.0
#include "grammar/extract_byte.h"

#include <istream>
#include <limits>

std::istream& extractByte(std::istream& input, uint8_t& value) {
  uint16_t number = 0;
  input >> number;
  if (number > std::numeric_limits<uint8_t>::max()) input.setstate(std::ios_base::failbit);
  value = static_cast<uint8_t>(number);
  return input;
}
