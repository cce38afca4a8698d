// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/block/fields.h"

// A calibration text from which the library makes `block`, which must be one that it can write:
// complete, with the right CRC, valid selector codes and reserved bytes of zero. A block does not
// hold the antennas' names, so the text has invented ones and says so.
std::string calibrationTextOf(const Bytes& block);
