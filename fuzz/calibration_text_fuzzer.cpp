// SPDX-License-Identifier: Apache-2.0
// A calibration text, read through both schemas and made into a block. The pieces between bytes
// 0xFF are the texts of several files.
#include "fuzz/literal_load.h"
#include "fuzz/support.h"
#include "loader/calib_loading.h"
#include "output/calib_converter.h"
#include "tests/kit/params.h"

namespace {

constexpr const char* kNameInLog = "path file";

Bytes blockOf(const std::vector<calibration>& calibrations) {
  ccc_calib calib{};
  const ParseResult result = parse_calibrations(calibrations, kNameInLog, calib);
  if (result != ParseResult::ValidCalibration) return {};
  return bytesOf(CalibConverter::convert(calib));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<calibration> calibrations;
  std::vector<LiteralFile> files;
  for (const std::string& text : split(std::string(data, data + size), '\xFF')) {
    const std::string path = "file " + std::to_string(files.size());
    calibrations.push_back({path, text});
    files.emplace_back(path, text);
  }
  Bytes block;
  Bytes literal_block;
  LiteralLoad literal({}, "");
  takeLog();
  const std::string thrown = thrownBy([&] { block = blockOf(calibrations); });
  const std::string literal_thrown =
      thrownBy([&] { literal_block = literal.blockOf(files, kNameInLog); });
  requireSameLog(literal.log);
  require(thrown == literal_thrown, "the same exception is thrown as by the literal reader");
  require(block == literal_block, "the block is that of the literal reader");
  return 0;
}
