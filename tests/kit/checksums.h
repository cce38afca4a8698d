// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/kit/types.h"

// The block's checksum, written a second time: whole bytes go in at the top of the register.
inline uint16_t blockCrc16(const Bytes& block) {
  unsigned int crc = 1;
  for (size_t i = 2; i < block.size(); ++i) {
    crc ^= static_cast<unsigned int>(block[i] << 8);
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 0x8000) != 0 ? crc << 1 ^ 0x11021 : crc << 1;
  }
  return static_cast<uint16_t>(crc);
}

// The CRC-32 of Ethernet, gzip and zlib.
inline uint32_t crc32Of(const Bytes& bytes) {
  uint32_t crc = 0xFFFFFFFF;
  for (const uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
  }
  return ~crc;
}
