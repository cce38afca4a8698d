// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <new>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tests/kit/guards.h"

// A load into a buffer between guards.
struct Load {
  explicit Load(unsigned int capacity = TARNIX_UWB_PARAMS_SIZE) : memory(guarded(capacity)) {
    try {
      result = load_uwb_params_from_files(memory.data() + kGuard, capacity);
    } catch (const std::bad_alloc&) {
      threw = true;
    }
  }

  Bytes memory;
  uint32_t result = 0;
  bool threw = false;  // std::bad_alloc. Load does not catch anything else.
};
