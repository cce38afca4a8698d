// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

inline constexpr bool kHostIsLittleEndian = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

// The bytes of a number, given most significant first, as they lie in the host's memory.
inline std::vector<uint8_t> inHostOrder(std::vector<uint8_t> bytes) {
  if (kHostIsLittleEndian) std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

// The same bytes the other way round.
inline std::vector<uint8_t> inReversedHostOrder(std::vector<uint8_t> bytes) {
  if (!kHostIsLittleEndian) std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

// A number whose bytes lie most significant first in memory, as the loader leaves them.
inline uint16_t mostSignificantFirst(uint16_t number) {
  return kHostIsLittleEndian ? static_cast<uint16_t>(number << 8 | number >> 8) : number;
}
inline uint32_t mostSignificantFirst(uint32_t number) {
  if (!kHostIsLittleEndian) return number;
  return number << 24 | (number & 0xFF00) << 8 | (number >> 8 & 0xFF00) | number >> 24;
}
