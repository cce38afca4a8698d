// SPDX-License-Identifier: Apache-2.0
#include "tools/block/crc_check.h"

#include <cstring>

#include "output/calib_converter.h"
#include "output/crc16.h"
#include "tools/text/text.h"

namespace {

uint16_t storedCrc(const Bytes& block) {
  return static_cast<uint16_t>(numberIn(block, fieldAt(0)));
}

uint16_t computedCrc(const Bytes& block) {
  ccc_params params;
  std::memcpy(&params, block.data(), sizeof(params));
  return CalibConverter::computeCrc16(EndiannessConversion::NoConversion, params);
}

uint16_t crcFrom(const Bytes& block, uint16_t start) {
  const size_t first = fieldAt(0).end();
  return Crc16().crc(block.data() + first, static_cast<uint32_t>(block.size() - first), start);
}

std::string wrongStart(const Bytes& block, uint16_t stored) {
  for (const uint16_t start : {uint16_t{0x0000}, uint16_t{0xFFFF}}) {
    const uint16_t crc = crcFrom(block, start);
    if (crc == stored) return "the CRC was started at " + hex(start, 4);
    if (byteSwapped(crc) == stored) {
      return "the CRC was started at " + hex(start, 4) + " and its bytes are swapped";
    }
  }
  return {};
}

std::string flippedBit(Bytes block) {
  for (size_t bit = 0; bit < block.size() * 8; ++bit) {
    const size_t offset = bit / 8;
    const auto mask = static_cast<uint8_t>(1 << bit % 8);
    const uint8_t is = block[offset];
    block[offset] ^= mask;
    if (storedCrc(block) == computedCrc(block)) {
      return StringPrintf("bit %zu of byte %zu (%s) is flipped: 0x%02X should be 0x%02X", bit % 8,
                          offset, fieldAt(offset).name, is, block[offset]);
    }
    block[offset] ^= mask;
  }
  return {};
}

// More than one cause may fit: a CRC that starts at 0x0000 looks like a flipped version bit.
std::string likelyCauses(const Bytes& block, uint16_t stored, uint16_t computed) {
  std::vector<std::string> causes;
  if (byteSwapped(computed) == stored) causes.emplace_back("the two bytes of the CRC are swapped");
  for (std::string cause : {wrongStart(block, stored), flippedBit(block)}) {
    if (!cause.empty()) causes.push_back(std::move(cause));
  }
  return Join(causes, ", or ");
}

}  // namespace

CrcCheck checkCrc(const Bytes& block) {
  CrcCheck check{storedCrc(block), computedCrc(block), {}};
  if (!check.good()) check.likely_cause = likelyCauses(block, check.stored, check.computed);
  return check;
}
