// SPDX-License-Identifier: Apache-2.0
#include "output/crc16.h"

namespace {

constexpr uint16_t kPolynomial = 0x1021;

uint16_t shiftIn(uint16_t crc, bool bit) {
  const bool top = (crc & 0x8000) != 0;
  const auto shifted = static_cast<uint16_t>(crc << 1);
  return top != bit ? shifted ^ kPolynomial : shifted;
}

}  // namespace

uint16_t Crc16::crc(const uint8_t* data, uint32_t length, uint16_t start) const {
  uint16_t crc = start;
  for (const uint8_t* byte = data; byte != data + length; ++byte) {
    for (int bit = 7; bit >= 0; --bit) crc = shiftIn(crc, ((*byte >> bit) & 1) != 0);
  }
  return crc;
}
