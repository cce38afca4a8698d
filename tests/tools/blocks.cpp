// SPDX-License-Identifier: Apache-2.0
#include "tests/tools/blocks.h"

#include "output/crc16.h"

namespace {

uint8_t randomByte(std::mt19937& random, FieldKind kind) {
  constexpr uint8_t kCodes[] = {0x01, 0x03, 0x04, 0x0C};
  if (kind == FieldKind::Reserved) return 0;
  if (kind == FieldKind::SelectorCode) return kCodes[random() % 4];
  return static_cast<uint8_t>(random());
}

}  // namespace

Bytes sealed(Bytes block) {
  const uint16_t crc =
      Crc16().crc(block.data() + 2, static_cast<uint32_t>(block.size()) - 2, 0x0001);
  block[0] = static_cast<uint8_t>(crc >> 8);
  block[1] = static_cast<uint8_t>(crc);
  return block;
}

Bytes randomBlock(std::mt19937& random) {
  Bytes block;
  for (const BlockField& field : kBlockFields) {
    for (size_t i = 0; i < field.size; ++i) block.push_back(randomByte(random, field.kind));
  }
  return sealed(block);
}
