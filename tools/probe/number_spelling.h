// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// How a number is spelled, where the C++ libraries read spellings differently.
//
// Both take a sign and then digits. libstdc++ stops at the first character that is no digit of the
// number's base and takes what it has. libc++, the device's, first gathers all characters that any
// base or prefix could use, digits, a to f and x, and refuses the number when any of them is left
// over: 0x1G is 1 to both, but 12b, 08 and 1x1 are 12, 0 and 1 to the one and an error to the
// other.
struct NumberSpelling {
  std::string gathered;  // What libc++ gathers.
  std::string number;    // The part of it that is a number; empty when there is none.

  bool readAlike() const { return number.empty() || number == gathered; }
};

// The spelling of the number that `text` begins with. `text` begins with no blank.
NumberSpelling spellingOf(const std::string& text);
