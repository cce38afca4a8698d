// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "schema/antenna_selection.h"
#include "schema/ccc_calib.h"

namespace {

TEST(AntennaCalib, FieldsFollowEachOtherAtTheirAlignment) {
  EXPECT_EQ(offsetof(antenna_calib, selector_gpio), 0U);
  EXPECT_EQ(offsetof(antenna_calib, selector_gpio_value), 1U);
  EXPECT_EQ(offsetof(antenna_calib, port), 2U);
  EXPECT_EQ(offsetof(antenna_calib, ant_delay), 4U);
  EXPECT_EQ(offsetof(antenna_calib, tx_power), 8U);
  EXPECT_EQ(offsetof(antenna_calib, pg_count), 12U);
  EXPECT_EQ(offsetof(antenna_calib, pg_delay), 14U);
  EXPECT_EQ(sizeof(antenna_calib), 16U);
  EXPECT_EQ(alignof(antenna_calib), 4U);
}

TEST(AntennaCalib, FieldsAreUnsignedAndAsWideAsTheirKeysAllow) {
  EXPECT_TRUE((std::is_same_v<decltype(antenna_calib::selector_gpio), uint8_t>));
  EXPECT_TRUE((std::is_same_v<decltype(antenna_calib::selector_gpio_value), uint8_t>));
  EXPECT_TRUE((std::is_same_v<decltype(antenna_calib::port), uint8_t>));
  EXPECT_TRUE((std::is_same_v<decltype(antenna_calib::ant_delay), uint16_t>));
  EXPECT_TRUE((std::is_same_v<decltype(antenna_calib::tx_power), uint32_t>));
  EXPECT_TRUE((std::is_same_v<decltype(antenna_calib::pg_count), uint16_t>));
  EXPECT_TRUE((std::is_same_v<decltype(antenna_calib::pg_delay), uint8_t>));
}

TEST(CccCalib, Channel5ComesBeforeChannel9) {
  EXPECT_EQ(offsetof(ccc_calib, version), 0U);
  EXPECT_EQ(offsetof(ccc_calib, ch5), 4U);
  EXPECT_EQ(offsetof(ccc_calib, ch9), 20U);
  EXPECT_EQ(offsetof(ccc_calib, temperature_reference), 36U);
  EXPECT_EQ(offsetof(ccc_calib, xtal_trim), 37U);
  EXPECT_EQ(offsetof(ccc_calib, wifi_coex_time_gap), 38U);
  EXPECT_EQ(offsetof(ccc_calib, ap_coop_mode), 39U);
  EXPECT_EQ(offsetof(ccc_calib, alternate_pulse_shape), 40U);
  EXPECT_EQ(offsetof(ccc_calib, wifi_coex_min_spacing), 41U);
  EXPECT_EQ(sizeof(ccc_calib), 44U);
  EXPECT_TRUE((std::is_same_v<decltype(ccc_calib::version), uint16_t>));
  EXPECT_TRUE(std::is_aggregate_v<ccc_calib>);
  EXPECT_TRUE(std::is_trivially_copyable_v<ccc_calib>);
}

TEST(AntennaSelection, IsAnAggregateWithChannel5First) {
  const antenna_selection selection{"first", "second"};
  EXPECT_EQ(selection.ch5, "first");
  EXPECT_EQ(selection.ch9, "second");
  EXPECT_TRUE(std::is_aggregate_v<antenna_selection>);
}

TEST(AntennaSelection, NamesMayBeEmpty) {
  const antenna_selection selection;
  EXPECT_EQ(selection.ch5, "");
  EXPECT_EQ(selection.ch9, "");
}

}  // namespace
