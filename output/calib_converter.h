// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "grammar/endianness_conversion.h"
#include "output/ccc_params.h"
#include "schema/ccc_calib.h"

// Turns a complete calibration into the controller's block.
class CalibConverter {
 public:
  // The sealed block. `calib` holds its 16- and 32-bit values most significant byte first, as the
  // loader leaves them. Throws std::invalid_argument when an antenna's selector has no code;
  // channel 9 is looked at first.
  static ccc_params convert(const ccc_calib& calib);

  // The selector code of an antenna: 1 or 3 for level 0 or 1 on GPIO 6, 4 or 12 on GPIO 7. Throws
  // std::invalid_argument, "GPIO must be 6 or 7" before "GPIO value must be 0 or 1".
  static uint8_t computeAntennaSelection(const antenna_calib& antenna);
  static uint8_t computeAntennaSelection(const uint8_t& gpio, const uint8_t& value);

  // The CRC of the block's bytes from offset 2 on, as a number for NoConversion, with its bytes
  // swapped for any other conversion.
  static uint16_t computeCrc16(EndiannessConversion conversion, const ccc_params& params);
};
