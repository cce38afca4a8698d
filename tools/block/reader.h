// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/block/fields.h"

// The bytes of a block in `input`: raw, in a format that the command writes (dump, JSON, C array),
// or as hexadecimal text, two digits a byte, with or without blanks, commas, colons and 0x between
// them. A block that is too short is returned as it is. Throws std::runtime_error, one line, when
// the input is no block.
Bytes readBlock(const std::string& input);
