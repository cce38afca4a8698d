// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/block/fields.h"

// A complete calibration text that the library turns into `block`, if it is one that the library
// can write: whole, sealed, with valid selector codes and zero reserved bytes. The block does not
// hold the antennas' names, so the text has invented ones and says so. Throws std::runtime_error
// for a block that lacks a field or has a selector code that no text gives.
std::string calibrationTextOf(const Bytes& block);
