// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <istream>
#include <optional>

// Reads a number in a plain spelling: 0, one to nine decimal digits that do not begin with 0, or 0x
// or 0X and one to eight hexadecimal digits; each up to white space or the end of the text. The
// stream's own extraction reads these as well, several times slower.
//
// Returns nothing for any other spelling and for a number above `largest`, with the stream as it
// was: the C++ libraries differ on other spellings, so the stream has to read them.
std::optional<uint32_t> readPlainNumber(std::istream& input, uint32_t largest);
