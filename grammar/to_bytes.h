// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "grammar/endianness_conversion.h"

// Appends the bytes of the object `value` to `out` and returns their number, sizeof(T): from the
// last to the first for SwapBytes, from the first to the last for any other conversion.
//
// For a std::string these are the bytes of the string object itself, not its characters: 12 on the
// 32-bit device.
template <typename T>
size_t to_bytes(const T& value, std::vector<uint8_t>& out, EndiannessConversion conversion) {
  const auto* const bytes = reinterpret_cast<const uint8_t*>(&value);
  for (size_t i = 0; i < sizeof(T); ++i) out.push_back(bytes[i]);
  if (conversion == EndiannessConversion::SwapBytes) std::reverse(out.end() - sizeof(T), out.end());
  return sizeof(T);
}
