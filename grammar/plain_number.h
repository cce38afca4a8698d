// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <streambuf>

// Reads a number in one of its plain spellings: a single 0, up to nine decimal digits that do not
// begin with 0, or 0x or 0X and up to eight hexadecimal digits; each up to white space or the end
// of the text. A stream's own extraction reads these, and takes several times as long for it.
//
// Nothing for any other spelling, and for a number above `largest`. The text then stands where it
// stood, and it is for the stream to read the number or to refuse it: the C++ libraries do not
// agree on all of them.
std::optional<uint32_t> readPlainNumber(std::streambuf& text, uint32_t largest);
