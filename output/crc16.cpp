// SPDX-License-Identifier: Apache-2.0
#include "output/crc16.h"

#include <array>
#include <cstddef>

namespace {

constexpr uint16_t kPolynomial = 0x1021;

// The register after a byte that stood in its upper half has been shifted out, bit by bit.
constexpr uint16_t shiftedOut(uint8_t byte) {
  uint32_t crc = uint32_t{byte} << 8;
  for (int bit = 0; bit < 8; ++bit) {
    crc = (crc & 0x8000) != 0 ? crc << 1 ^ kPolynomial : crc << 1;
  }
  return static_cast<uint16_t>(crc);
}

constexpr std::array<uint16_t, 256> makeTable() {
  std::array<uint16_t, 256> table{};
  for (size_t byte = 0; byte < table.size(); ++byte) {
    table[byte] = shiftedOut(static_cast<uint8_t>(byte));
  }
  return table;
}

constexpr std::array<uint16_t, 256> kTable = makeTable();

}  // namespace

uint16_t Crc16::crc(const uint8_t* data, uint32_t length, uint16_t start) const {
  uint16_t crc = start;
  for (const uint8_t* byte = data; byte != data + length; ++byte) {
    crc = static_cast<uint16_t>(crc << 8 ^ kTable[crc >> 8 ^ *byte]);
  }
  return crc;
}
