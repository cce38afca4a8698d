// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <random>

#include "tools/block/fields.h"

// Blocks for the tests of the tools.

// The random numbers of one test. They follow from UWB_TEST_SEED, or from 1; a failure tells the
// command that repeats it.
class SeededRandom : public std::mt19937 {
 public:
  SeededRandom();

 private:
  const testing::ScopedTrace repeat_;
};

// A whole block with random values, sealed as the library seals it.
Bytes randomBlock(std::mt19937& random);

// The block with the CRC that belongs to it.
Bytes sealed(Bytes block);
