// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/kit/temporary_tree.h"

// A device whose calibration is valid, in the working directory.

inline constexpr const char* kCountryCode = "FR";
inline constexpr const char* kPathFile = "path_file_of_the_vendor.conf";
inline constexpr const char* kCommonFile = "calibration_of_all_countries.conf";
inline constexpr const char* kCountryFile = "calibration_of_the_country_fr.conf";
inline constexpr const char* kDefaultFile = "calibration_of_the_country_default.conf";

// Everything but the antennas' wiring is given twice: what comes later wins.
std::string commonText();
std::string countryText();
std::string pathFileText();

// The block of this calibration.
std::vector<uint8_t> deviceBlock();

// A tree that holds the device's files.
class Device : public TemporaryTree {
 public:
  Device();
};
