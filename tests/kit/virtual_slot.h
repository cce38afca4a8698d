// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

// The place of a virtual function in its class's table. The C++ ABI of every target keeps it in the
// first word of the pointer to the member, beside a mark in the lowest bit of one of the two words.
template <typename Function>
size_t slotOf(Function function) {
  uintptr_t words[2];
  static_assert(sizeof(function) == sizeof(words));
  std::memcpy(words, &function, sizeof(words));
  EXPECT_EQ((words[0] | words[1]) & 1, 1U) << "not virtual";
  return (words[0] & ~uintptr_t{1}) / sizeof(void*);
}
