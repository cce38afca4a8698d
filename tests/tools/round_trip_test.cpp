// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <cstring>

#include "loader/calib_loading.h"
#include "output/calib_converter.h"
#include "tests/tools/blocks.h"
#include "tools/probe/calibration_text.h"

namespace {

// The block that the library makes of a text.
Bytes blockOf(const std::string& text) {
  ccc_calib calib{};
  EXPECT_EQ(parse_calibrations({{"text", text}}, "path file", calib),
            ParseResult::ValidCalibration);
  const ccc_params params = CalibConverter::convert(calib);
  Bytes block(sizeof(params));
  std::memcpy(block.data(), &params, sizeof(params));
  return block;
}

TEST(RoundTrip, TextOfABlockMakesTheSameBlock) {
  SeededRandom random;
  for (int i = 0; i < 300; ++i) {
    const Bytes block = randomBlock(random);
    ASSERT_EQ(blockOf(calibrationTextOf(block)), block);
  }
}

TEST(RoundTrip, PortZeroIsTheWrappedPort255) {
  Bytes block(kBlockSize);
  block[33] = 0x01;
  block[36] = 0x0C;
  block = sealed(block);
  const std::string text = calibrationTextOf(block);
  EXPECT_THAT(text, testing::HasSubstr("ant5.port=255\n"));
  EXPECT_EQ(blockOf(text), block);
}

TEST(RoundTrip, TextSaysThatItsNamesAreInvented) {
  SeededRandom random;
  EXPECT_THAT(calibrationTextOf(randomBlock(random)), testing::HasSubstr("invented"));
}

}  // namespace
