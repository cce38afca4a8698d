// SPDX-License-Identifier: Apache-2.0
#include "output/ccc_params.h"

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>
#include <vector>

#include "tests/kit/byte_order.h"

namespace {

TEST(CccParams, IsEightyTwoBytesAtAnyAddress) {
  EXPECT_EQ(sizeof(ccc_params), 82U);
  EXPECT_EQ(alignof(ccc_params), 1U);
  EXPECT_TRUE(std::is_trivially_copyable_v<ccc_params>);
}

// The whole layout at once: each field is given its own offsets as its bytes.
TEST(CccParams, FieldsLieAtTheirOffsets) {
  ccc_params params{};
  params.crc = mostSignificantFirst(uint16_t{0x0001});
  params.version = mostSignificantFirst(uint16_t{0x0203});
  params.ch9_ant_delay = mostSignificantFirst(uint16_t{0x0405});
  params.ch5_ant_delay = mostSignificantFirst(uint16_t{0x0607});
  params.ch9_tx_power = mostSignificantFirst(uint32_t{0x08090A0B});
  params.ch9_pg_count = mostSignificantFirst(uint16_t{0x0C0D});
  params.ch9_pg_delay = 0x0E;
  params.ch5_tx_power = mostSignificantFirst(uint32_t{0x0F101112});
  params.ch5_pg_count = mostSignificantFirst(uint16_t{0x1314});
  params.ch5_pg_delay = 0x15;
  params.temperature_reference = 0x1A;
  params.xtal_trim = 0x1B;
  params.wifi_coex_time_gap = 0x1F;
  params.ap_coop_mode = 0x20;
  params.ch5_antenna_selection = 0x21;
  params.alternate_pulse_shape = 0x22;
  params.wifi_coex_min_spacing = 0x23;
  params.ch9_antenna_selection = 0x24;
  params.ch5_port = 0x25;
  params.ch9_port = 0x26;
  std::vector<uint8_t> bytes(sizeof(params));
  std::memcpy(bytes.data(), &params, sizeof(params));
  std::vector<uint8_t> expected(82);
  for (size_t i = 0; i < 39; ++i) {
    const bool reserved = (i >= 22 && i <= 25) || (i >= 28 && i <= 30);
    if (!reserved) expected[i] = static_cast<uint8_t>(i);
  }
  EXPECT_EQ(bytes, expected);
}

}  // namespace
