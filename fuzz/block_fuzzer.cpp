// SPDX-License-Identifier: Apache-2.0
// The command's reader of blocks and everything that it shows of one. The input is a block: raw,
// cut, as hexadecimal text, or none.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <stdexcept>

#include "loader/calib_loading.h"
#include "output/calib_converter.h"
#include "tools/block/crc_check.h"
#include "tools/block/reader.h"
#include "tools/block/view.h"
#include "tools/device/device_library.h"
#include "tools/probe/calibration_text.h"

namespace {

// The command has a log of its own, so the other targets' support does not fit here.
void require(bool kept, const char* promise) {
  if (kept) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

bool isOneLine(const std::string& text) {
  return !text.empty() && text.find('\n') == text.npos;
}

// Whether the library could have written the block.
bool isLibrarys(const Bytes& block) {
  return block.size() == kBlockSize && checkCrc(block).good() &&
         std::none_of(std::begin(kBlockFields), std::end(kBlockFields),
                      [&](const BlockField& field) { return isSuspect(block, field); });
}

void checkRoundTrip(const Bytes& block) {
  const LogCapture log;
  ccc_calib calib{};
  const ParseResult result =
      parse_calibrations({{"text", calibrationTextOf(block)}}, "path file", calib);
  require(result == ParseResult::ValidCalibration, "the text of a block is a whole calibration");
  const ccc_params params = CalibConverter::convert(calib);
  require(std::memcmp(&params, block.data(), sizeof(params)) == 0,
          "the text of a block makes the same block");
}

void checkViews(const Bytes& block) {
  for (const std::string& text :
       {hexOf(block), dumpOf(block), cArrayOf(block), documentOf(jsonOf(block))}) {
    require(readBlock(text) == block, "every format reads as what it was written from");
  }
  require(!mapOf(block, Paint(true)).empty(), "every block has a map");
  require(differingFields(block, block).empty(), "a block does not differ from itself");
  for (const BlockField& field : kBlockFields) {
    require(meaningOf(block, field).find('\n') == std::string::npos, "a meaning is one line");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Bytes block;
  try {
    block = readBlock(std::string(data, data + size));
  } catch (const std::runtime_error& e) {
    require(isOneLine(e.what()), "what is no block is told in one line");
    return 0;
  }
  require(!block.empty() && block.size() <= kBlockSize, "a block has 1 to 82 bytes");
  checkViews(block);
  if (block.size() == kBlockSize)
    require(isOneLine("." + checkCrc(block).likely_cause), "a cause is one line");
  if (isLibrarys(block)) checkRoundTrip(block);
  return 0;
}
