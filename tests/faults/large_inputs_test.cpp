// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <fstream>

#include "tests/faults/device.h"
#include "tests/faults/effort.h"
#include "tests/kit/allocations.h"
#include "tests/kit/doubles.h"

namespace {

constexpr size_t kMegabyte = 1000000;

// Besides the texts, a load holds its trees and a few lines.
constexpr size_t kSmall = 100000;

void expectRightBlockWithin(size_t bytes) {
  keepLog(false);
  expectRightBlock();  // What the standard library keeps is not this load's.
  const PeakMemory peak;
  expectRightBlock();
  EXPECT_LE(peak.bytes(), bytes);
  keepLog(true);
}

class LargeInputs : public testing::Test {
 protected:
  ~LargeInputs() override { keepLog(true); }

  // Writes `line` until the file has `size` bytes, then `end`.
  void fill(const std::string& path, const std::string& line, size_t size, const std::string& end) {
    std::ofstream file(path, std::ios::binary);
    for (size_t written = 0; written < size; written += line.size()) file << line;
    file << end;
  }

  Device device;
};

TEST_F(LargeInputs, PathFileWithAMillionLines) {
  const size_t lines = effort(1000000);
  fill(kPathFile, "\n", lines, pathFileText());
  expectRightBlockWithin(lines + lines / 20 + kSmall);
}

TEST_F(LargeInputs, LineOfTenMegabytesInAPathFile) {
  device.write(kPathFile, std::string(10 * kMegabyte, 'a') + "\n" + pathFileText());
  keepLog(false);
  expectRightBlock();
}

TEST_F(LargeInputs, LineOfTenMegabytesInAText) {
  const std::string filler(10 * kMegabyte, ' ');
  device.write(kCountryFile, countryText() + "xtal_trim=" + filler + "40\n");
  expectRightBlock();
  device.write(kCountryFile, countryText() + "xtal_trim=40;" + filler + "\n");
  expectRightBlock();
  device.write(kCountryFile, countryText() + filler + "version=3\n#" + filler + "version=3\n");
  expectRightBlock();
}

TEST_F(LargeInputs, TextsOfAHundredMegabytesAreHeldOnce) {
  const size_t size = effort(100 * kMegabyte);
  fill(kCountryFile, "# note for note, kept by the tool that measured the antennas\n", size,
       countryText());
  expectRightBlockWithin(size + size / 20 + kSmall);
}

TEST_F(LargeInputs, ManyTextsAreHeldOnceEach) {
  const size_t count = effort(100);
  std::string lines;
  for (size_t i = 0; i < count; ++i) lines += "large_text.conf\n";
  fill("large_text.conf", "# note for note, kept by the tool that measured the antennas\n",
       kMegabyte, "");
  device.write(kPathFile, lines + pathFileText());
  const size_t size = count * kMegabyte;
  expectRightBlockWithin(size + size / 20 + kSmall);
}

}  // namespace
