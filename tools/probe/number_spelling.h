// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// How the C++ libraries read the spelling of a number.
//
// Both read a sign and then digits. libstdc++ stops at the first character that is no digit of the
// number's base. libc++, the device's, first gathers all digits and the letters a to f and x, and
// refuses the number when it cannot use all of them: 0x1G is 1 in both, but 12b, 08 and 1x1 are
// 12, 0 and 1 in libstdc++ and an error in libc++.
struct NumberSpelling {
  std::string gathered;  // What libc++ gathers.
  std::string number;    // What libstdc++ reads of it; empty when there is no number.

  bool readAlike() const { return number.empty() || number == gathered; }
};

// The spelling of the number that `text` begins with. `text` begins with no blank.
NumberSpelling spellingOf(const std::string& text);
