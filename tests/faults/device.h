// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include "tests/kit/calibrations.h"
#include "tests/kit/doubles.h"
#include "tests/kit/guarded_load.h"
#include "tests/kit/temporary_tree.h"

// A device whose calibration is valid: in a tree of its own, which is the working directory, with
// its properties. Names are longer than a string object holds itself.

inline constexpr const char* kPathFile = "path_file_of_the_vendor.conf";
inline constexpr const char* kCommonFile = "calibration_of_all_countries.conf";
inline constexpr const char* kCountryFile = "calibration_of_the_country_fr.conf";
inline constexpr const char* kAntenna5 = "patch_antenna_on_the_back";
inline constexpr const char* kAntenna9 = "slot_antenna_on_the_edge";

// The calibration of tests/kit, of which the common file gives some wrong numbers that the
// country's file or a later line puts right.
std::string commonText();
std::string countryText();
std::string pathFileText();

class Device : public TemporaryTree {
 public:
  Device();
  ~Device();
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;
};

// Loads and requires the device's whole block. Discards the log.
inline void expectRightBlock() {
  const Load next;
  EXPECT_FALSE(next.threw);
  EXPECT_EQ(next.result, 82U);
  EXPECT_EQ(next.memory, guarded(82, block()));
  takeLog();
}
