// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// The country codes for which the tree has a calibration file, in alphabetical order, as
// found in the names of files that exist. "default" and "unknown" are no country codes.
std::vector<std::string> countriesOfTree();

// How a country code is written everywhere: "de", "no country code" for none.
std::string countryName(const std::string& country);

// "country de", "no country code".
std::string countryTitle(const std::string& country);
