// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>

#include "tests/kit/types.h"

inline constexpr bool kHostIsLittleEndian = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

// The bytes of a number, given most significant first, as they lie in the host's memory.
inline Bytes inHostOrder(Bytes bytes) {
  if (kHostIsLittleEndian) std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

// The same bytes the other way round.
inline Bytes inReversedHostOrder(Bytes bytes) {
  if (!kHostIsLittleEndian) std::reverse(bytes.begin(), bytes.end());
  return bytes;
}
