// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "output/crc16.h"
#include "tests/tools/blocks.h"
#include "tools/block/crc_check.h"
#include "tools/block/reader.h"
#include "tools/block/view.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

// An empty text when nothing is thrown.
std::string refusal(const std::string& input) {
  try {
    readBlock(input);
    return {};
  } catch (const std::runtime_error& e) {
    return e.what();
  }
}

Bytes someBlock() {
  std::mt19937 random(5);  // NOLINT(bugprone-random-generator-seed): one block like any other.
  return randomBlock(random);
}

std::string raw(const Bytes& block) {
  return {block.begin(), block.end()};
}

TEST(BlockReader, ReadsRawBytes) {
  EXPECT_EQ(readBlock(raw(someBlock())), someBlock());
}

TEST(BlockReader, ReadsHexTextInEverySpelling) {
  const Bytes bytes = {0xDA, 0x35, 0x00, 0x0C};
  for (const char* text :
       {"da35000c", "DA 35 00 0C\n", "da:35:00:0c", "0xDA, 0x35, 0x00, 0X0c,", "\tda35\r\n000c"}) {
    EXPECT_EQ(readBlock(text), bytes) << text;
  }
}

TEST(BlockReader, ReadsEveryFormatThatIsWritten) {
  Bytes block = someBlock();
  for (const size_t size : {kBlockSize, size_t{38}, size_t{10}, size_t{1}}) {
    block.resize(size);
    for (const std::string& text :
         {hexOf(block), dumpOf(block), cArrayOf(block), documentOf(jsonOf(block))}) {
      EXPECT_EQ(readBlock(text), block) << text;
    }
  }
}

TEST(BlockReader, ReadsADumpWithEmptyLines) {
  EXPECT_EQ(readBlock(dumpOf(someBlock()) + "\n\n"), someBlock());
}

TEST(BlockReader, ReadsARawBlockThatBeginsLikeAFormat) {
  for (const std::string& begin : {std::string("{"), std::string("offset  bytes")}) {
    Bytes block(kBlockSize);
    std::copy(begin.begin(), begin.end(), block.begin());
    EXPECT_EQ(readBlock(raw(block)), block);
  }
}

TEST(BlockReader, ReadsACutBlockAsItIs) {
  EXPECT_EQ(readBlock(std::string("\xDA\x35\x00", 3)), (Bytes{0xDA, 0x35, 0x00}));
  EXPECT_EQ(readBlock("\x7F"), Bytes{0x7F});
}

TEST(BlockReader, RefusesWhatIsNoBlock) {
  EXPECT_EQ(refusal(""), "no block: the input is empty");
  EXPECT_EQ(refusal(" \n"), "no block: the input is empty");
  EXPECT_EQ(refusal(std::string(83, '\0')), "no block: 83 bytes, a block has 82");
  const std::string no_format = "no block: a text, but in no format that build writes";
  const std::string cut_json = "no block: the JSON document is not whole";
  EXPECT_EQ(refusal("xtal_trim\t= 40 ~\r\n"), no_format);
  EXPECT_EQ(refusal("[1]"), no_format);
  EXPECT_EQ(refusal(std::string(2000, '[')), no_format);
  EXPECT_EQ(refusal("{\"bytes\": 12}"), no_format);
  EXPECT_EQ(refusal("{\"bytes\": \"gg\"}"), no_format);
  EXPECT_EQ(refusal("int a[] = { 0x1g };"), no_format);
  EXPECT_EQ(refusal("{\"bytes\": \"00\""), cut_json);
  EXPECT_EQ(refusal("{\"a\":" + std::string(2000, '[')), cut_json);
  EXPECT_EQ(refusal("da3"), "hexadecimal text, but no two digits at character 3");
  EXPECT_EQ(refusal("0x"), "hexadecimal text, but no two digits at character 3");
  EXPECT_EQ(refusal("d x"), "hexadecimal text, but no two digits at character 1");
}

TEST(BlockReader, NeverFailsOnAnyBytesButWithOneLine) {
  SeededRandom random;
  for (int i = 0; i < 3000; ++i) {
    std::string input(random() % 100, '\0');
    const std::string alphabet = "0123456789abcdefxX ,:\n{}\"/*";
    for (char& c : input) {
      c = i % 2 == 0 ? static_cast<char>(random()) : alphabet[random() % alphabet.size()];
    }
    EXPECT_THAT(refusal(input), testing::Not(HasSubstr("\n")));
  }
}

TEST(BlockFields, NumbersLieMostSignificantByteFirst) {
  Bytes block(kBlockSize);
  block[15] = 0x11;
  block[18] = 0x44;
  EXPECT_EQ(numberIn(block, fieldAt(16)), 0x11000044U);
}

TEST(CrcCheck, SealedBlockIsGood) {
  const CrcCheck check = checkCrc(someBlock());
  EXPECT_TRUE(check.good());
  EXPECT_EQ(check.likely_cause, "");
}

TEST(CrcCheck, SeesSwappedBytes) {
  Bytes block = someBlock();
  std::swap(block[0], block[1]);
  EXPECT_EQ(checkCrc(block).likely_cause, "the two bytes of the CRC are swapped");
}

TEST(CrcCheck, SeesAnotherStart) {
  for (const uint16_t start : {uint16_t{0x0000}, uint16_t{0xFFFF}}) {
    const std::string name = start == 0 ? "0x0000" : "0xFFFF";
    Bytes block = someBlock();
    const uint16_t crc = Crc16().crc(block.data() + 2, 80, start);
    block[0] = static_cast<uint8_t>(crc >> 8);
    block[1] = static_cast<uint8_t>(crc);
    EXPECT_THAT(checkCrc(block).likely_cause, StartsWith("the CRC was started at " + name));
    std::swap(block[0], block[1]);
    EXPECT_EQ(checkCrc(block).likely_cause,
              "the CRC was started at " + name + " and its bytes are swapped");
  }
}

TEST(CrcCheck, NamesEveryCauseThatExplainsIt) {
  Bytes block = someBlock();
  block[3] ^= 1;
  EXPECT_THAT(checkCrc(block).likely_cause,
              testing::MatchesRegex("the CRC was started at 0x0000, or bit 0 of byte 3 .*"));
}

TEST(CrcCheck, NamesTheFlippedBitWhereverItIs) {
  for (size_t bit = 0; bit < kBlockSize * 8; ++bit) {
    Bytes block = someBlock();
    block[bit / 8] ^= static_cast<uint8_t>(1 << bit % 8);
    EXPECT_THAT(checkCrc(block).likely_cause,
                HasSubstr("bit " + std::to_string(bit % 8) + " of byte " + std::to_string(bit / 8) +
                          " (" + fieldAt(bit / 8).name + ")"));
  }
}

TEST(CrcCheck, NamesNoCauseForMoreThanOneBit) {
  Bytes block = someBlock();
  block[2] ^= 0x11;
  block[50] ^= 0x77;
  EXPECT_FALSE(checkCrc(block).good());
  EXPECT_EQ(checkCrc(block).likely_cause, "");
}

TEST(BlockView, MeaningNamesLineLevelAndPort) {
  Bytes block(kBlockSize);
  block[33] = 0x03;
  block[36] = 0x05;
  block[37] = 0x02;
  EXPECT_EQ(meaningOf(block, fieldAt(33)), "GPIO 6, level 1");
  EXPECT_EQ(meaningOf(block, fieldAt(36)), "no selector code: 0x01, 0x03, 0x04 or 0x0C");
  EXPECT_EQ(meaningOf(block, fieldAt(37)), "port 1");
  EXPECT_EQ(meaningOf(block, fieldAt(38)), "port 255, wrapped around");
}

TEST(BlockView, NamesReservedBytesThatAreNotZero) {
  Bytes block(kBlockSize);
  block[23] = 1;
  block[25] = 2;
  EXPECT_EQ(meaningOf(block, fieldAt(22)), "not zero at 23, 25");
  EXPECT_TRUE(isSuspect(block, fieldAt(22)));
  EXPECT_FALSE(isSuspect(block, fieldAt(28)));
}

}  // namespace
