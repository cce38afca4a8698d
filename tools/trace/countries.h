// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// The country codes for which the tree has a calibration file of its own, in alphabetical order:
// what stands in the placeholder's place in files that exist. Neither the default's word nor the
// word for no country is one.
std::vector<std::string> countriesOfTree();

// "country de", "no country".
std::string countryTitle(const std::string& country);
