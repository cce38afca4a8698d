// SPDX-License-Identifier: Apache-2.0
#include "output/calib_writer.h"

#include <algorithm>

uint32_t write_calib_to_buffer(const ccc_params& params, void* buffer, uint32_t size) {
  const uint32_t count = std::min(static_cast<uint32_t>(sizeof(params)), size);
  std::copy_n(reinterpret_cast<const uint8_t*>(&params), count, static_cast<uint8_t*>(buffer));
  return count;
}
