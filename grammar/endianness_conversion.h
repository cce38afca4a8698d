// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

// What happens to the bytes of a 16- or 32-bit value on its way into a record or a byte stream.
enum class EndiannessConversion {
  NoConversion = 0,  // The host's byte order is kept.
  SwapBytes = 1,     // The bytes are reversed.
};

// The conversion after which a value lies most significant byte first in memory, the order in which
// the controller reads its block. A little-endian host, as the device is, has to swap for that; on
// a big-endian host the value lies so already, and a swap would put its least significant byte
// first.
inline constexpr EndiannessConversion kMostSignificantByteFirst =
    __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? EndiannessConversion::SwapBytes
                                              : EndiannessConversion::NoConversion;

inline uint8_t byteSwapped(uint8_t value) {
  return value;
}
inline uint16_t byteSwapped(uint16_t value) {
  return __builtin_bswap16(value);
}
inline uint32_t byteSwapped(uint32_t value) {
  return __builtin_bswap32(value);
}
inline const std::string& byteSwapped(const std::string& text) {
  return text;
}

// `value` as it is for NoConversion, with its bytes reversed for any other conversion.
template <typename T>
T converted(const T& value, EndiannessConversion conversion) {
  return conversion == EndiannessConversion::NoConversion ? value : byteSwapped(value);
}
