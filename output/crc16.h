// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

// CRC-16 with polynomial 0x1021, most significant bit first, no reflection, no final XOR. The
// controller's block starts it at 0x0001, not at the usual 0x0000 or 0xFFFF.
class Crc16 {
 public:
  // The CRC of `length` bytes at `data`, from the register value `start`: `start` for no byte.
  uint16_t crc(const uint8_t* data, uint32_t length, uint16_t start) const;
};
