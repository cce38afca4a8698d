// SPDX-License-Identifier: Apache-2.0
// A whole load. The input is the capacity and the description of a device folder.
#include <algorithm>

#include "fuzz/device_folder.h"
#include "fuzz/literal_load.h"
#include "fuzz/support.h"
#include "tests/kit/guarded_load.h"

namespace {

constexpr unsigned int kLargestCapacity = 200;

void checkLoad(unsigned int capacity, const Bytes& block, const Log& log) {
  const Bytes written(block.data(), block.data() + std::min<size_t>(block.size(), capacity));
  takeLog();
  const Load load(capacity);
  requireSameLog(log);
  require(!load.threw && load.result == written.size(), "the result is the number of bytes");
  require(load.memory == guarded(capacity, written), "the block is written and nothing else");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  InputBytes input(data, size);
  const unsigned int capacity = input.byte() % (kLargestCapacity + 1);
  const DeviceFolder device(input.rest());
  LiteralLoad literal(DeviceFolder::textOf, device.country());
  const Bytes block = literal.run(device.pathProperty());
  checkLoad(TARNIX_UWB_PARAMS_SIZE, block, literal.log);
  checkLoad(capacity, block, literal.log);
  return 0;
}
