// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// The country codes for which the tree has a calibration file, in alphabetical order: what stands
// in the place of the placeholder in files that exist. "default" and "unknown" are none.
std::vector<std::string> countriesOfTree();

// "country de", "no country code".
std::string countryTitle(const std::string& country);
