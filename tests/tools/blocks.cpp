// SPDX-License-Identifier: Apache-2.0
#include "tests/tools/blocks.h"

#include <cstdlib>
#include <filesystem>

#include "output/crc16.h"

namespace {

uint8_t randomByte(std::mt19937& random, FieldKind kind) {
  constexpr uint8_t kCodes[] = {0x01, 0x03, 0x04, 0x0C};
  if (kind == FieldKind::Reserved) return 0;
  if (kind == FieldKind::SelectorCode) return kCodes[random() % 4];
  return static_cast<uint8_t>(random());
}

std::string seedText() {
  const char* const seed = std::getenv("UWB_TEST_SEED");
  return seed == nullptr ? "1" : seed;
}

std::string repeatCommand() {
  const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
  const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
  return "to repeat: UWB_TEST_SEED=" + seedText() + ' ' + program +
         " --gtest_filter=" + test.test_suite_name() + '.' + test.name();
}

}  // namespace

SeededRandom::SeededRandom() : repeat_(__FILE__, __LINE__, repeatCommand()) {
  const std::string text = seedText();
  std::seed_seq sequence(text.begin(), text.end());
  seed(sequence);
}

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
