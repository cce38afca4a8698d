// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>
#include <vector>

#include "schema/antenna_selection.h"
#include "schema/ccc_calib.h"

namespace {

// pattern_test.cpp tests how wide the fields are.

using Offsets = std::vector<size_t>;

TEST(AntennaCalib, FieldsFollowEachOtherAtTheirAlignment) {
  using A = antenna_calib;
  EXPECT_EQ((Offsets{offsetof(A, selector_gpio), offsetof(A, selector_gpio_value),
                     offsetof(A, port), offsetof(A, ant_delay), offsetof(A, tx_power),
                     offsetof(A, pg_count), offsetof(A, pg_delay), sizeof(A)}),
            (Offsets{0, 1, 2, 4, 8, 12, 14, 16}));
  EXPECT_EQ(alignof(A), 4U);
}

TEST(CccCalib, Channel5ComesBeforeChannel9) {
  using C = ccc_calib;
  EXPECT_EQ(
      (Offsets{offsetof(C, version), offsetof(C, ch5), offsetof(C, ch9),
               offsetof(C, temperature_reference), offsetof(C, xtal_trim),
               offsetof(C, wifi_coex_time_gap), offsetof(C, ap_coop_mode),
               offsetof(C, alternate_pulse_shape), offsetof(C, wifi_coex_min_spacing), sizeof(C)}),
      (Offsets{0, 4, 20, 36, 37, 38, 39, 40, 41, 44}));
  EXPECT_TRUE(std::is_aggregate_v<C>);
  EXPECT_TRUE(std::is_trivially_copyable_v<C>);
}

TEST(AntennaSelection, IsAnAggregateWithChannel5First) {
  const antenna_selection selection{"first", "second"};
  EXPECT_EQ(selection.ch5, "first");
  EXPECT_EQ(selection.ch9, "second");
  EXPECT_TRUE(std::is_aggregate_v<antenna_selection>);
}

}  // namespace
