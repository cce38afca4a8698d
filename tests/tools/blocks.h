// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <random>

#include "tools/block/fields.h"

// Blocks for the tests of the tools.

// A whole block with random values, sealed as the library seals it.
Bytes randomBlock(std::mt19937& random);

// The block with the CRC that belongs to it.
Bytes sealed(Bytes block);
