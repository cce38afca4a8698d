// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// Which antenna serves which channel. Filled by the keys `ch5.antenna_selection` and
// `ch9.antenna_selection`; the names then begin the keys of the antennas' own values.
struct antenna_selection {
  std::string ch5;
  std::string ch9;
};
