// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <new>
#include <vector>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tests/kit/guards.h"

using Bytes = std::vector<uint8_t>;

// The memory of a buffer and its guards with `written` in the buffer. `shift` takes the buffer off
// the alignment of any type.
inline Bytes guarded(size_t capacity, const Bytes& written = {}, size_t shift = 0) {
  Bytes memory(GUARD + capacity + shift + GUARD);
  guard(memory.data(), capacity + shift, nullptr, 0);
  std::copy(written.begin(), written.end(), memory.begin() + static_cast<ptrdiff_t>(GUARD + shift));
  return memory;
}

// A load into a buffer between guards.
struct Load {
  explicit Load(unsigned int capacity = TARNIX_UWB_PARAMS_SIZE, size_t shift = 0)
      : memory(guarded(capacity, {}, shift)) {
    try {
      result = load_uwb_params_from_files(memory.data() + GUARD + shift, capacity);
    } catch (const std::bad_alloc&) {
      threw = true;
    }
  }

  Bytes memory;
  uint32_t result = 0;
  bool threw = false;  // std::bad_alloc. Load does not catch anything else.
};
