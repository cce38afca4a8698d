// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>

#include "tests/kit/types.h"

// A caller's buffer lies between two guards of this size. They, and the buffer before it is written
// to, are full of one byte.
constexpr size_t kGuard = 64;
constexpr uint8_t kUntouched = 0xA5;

// The memory of a buffer and its guards with `written` in the buffer. `shift` takes the buffer off
// the alignment of any type.
inline Bytes guarded(size_t capacity, const Bytes& written = {}, size_t shift = 0) {
  Bytes memory(kGuard + capacity + shift + kGuard, kUntouched);
  const auto buffer = memory.begin() + static_cast<std::ptrdiff_t>(kGuard + shift);
  std::copy(written.begin(), written.end(), buffer);
  return memory;
}
