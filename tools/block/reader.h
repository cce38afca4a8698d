// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/block/fields.h"

// The bytes of a block in `input`: raw, in a format that the command writes (dump, JSON, C array),
// or as hexadecimal text, two digits a byte, with or without blanks, commas, colons and 0x between
// them. A block that is too short is returned as it is. Throws std::runtime_error, one line, when
// the input is no block.
Bytes readBlock(const std::string& input);

// Far more than a block in any format.
constexpr size_t kLargestInput = 65536;

// The bytes of the file, of the standard input for "-". Throws std::runtime_error when it cannot be
// read or is larger than `largest`.
std::string readInput(const std::string& path, size_t largest = kLargestInput);
