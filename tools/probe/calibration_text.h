// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/block/fields.h"

// A calibration text from which the library makes `block`, if the library can write such a block:
// complete, with the right CRC, valid selector codes and reserved bytes of zero. A block does not
// hold the antennas' names, so the text has invented ones and says so. Throws std::runtime_error
// for a block that lacks a field or has a selector code that no text gives.
std::string calibrationTextOf(const Bytes& block);
