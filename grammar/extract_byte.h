// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <iosfwd>

// Extracts a number from 0 to 255 in the stream's base, after any white space. A stream's own
// extraction of an 8-bit value would take one character. Sets the fail state for anything else.
std::istream& extractByte(std::istream& input, uint8_t& value);
