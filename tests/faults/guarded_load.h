// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Loads into a buffer with a guard on both sides.

inline constexpr size_t kGuard = 64;
inline constexpr uint8_t kUntouched = 0xA5;

struct Load {
  uint32_t result = 0;
  bool threw = false;           // std::bad_alloc; anything else fails the test.
  std::vector<uint8_t> memory;  // The buffer and its guards.
};

// Loads into a buffer of `capacity` bytes, `shift` bytes off the alignment of any type.
Load load(unsigned int capacity, size_t shift = 0);

// What the memory of a load looks like with the first `count` bytes of the device's block in its
// buffer.
std::vector<uint8_t> memoryWith(size_t count, unsigned int capacity, size_t shift = 0);

// Loads and requires the device's whole block. Discards the log.
void expectRightBlock();
