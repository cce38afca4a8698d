// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "loader/calib_path.h"
#include "tools/trace/load_trace.h"

// The countries of a tree, and what they are called. A load belongs to a country's code, to none
// (an empty code), or to any other country: that one has the word of the default's file for a code.
constexpr const char* kOtherCountry = CalibPath::kDefaultCountry;

struct Countries {
  std::vector<std::string> loads;      // One for each; codes in alphabetical order.
  std::vector<std::string> not_taken;  // Names in a code's place that are no code of two letters.
  std::vector<TracedPath> unlisted = {};  // Folders of more that this user cannot list.
};

// The countries of the list "us,de,other,none", each once; std::runtime_error where there are none.
// Without a list: those for which the tree has a calibration file of its own, readable or not, or
// something else in the place of its folder; any other; and none.
Countries countriesToLoad(const std::optional<std::string>& list);

// "not taken for countries: base, latam (...)"; empty when there are none.
std::string notTakenText(const std::vector<std::string>& names);

// Two small letters.
bool isCountryCode(const std::string& text);

// "de", "any other country", "no country code".
std::string countryName(const std::string& country);

// "country de", and else as above.
std::string countryTitle(const std::string& country);

// "both loads", "all 3 loads".
std::string allLoads(size_t count);

// As it is written in a list: a country's code, or one of these.
constexpr const char* kOtherWord = "other";
constexpr const char* kNoneWord = "none";
std::string countryWord(const std::string& country);

// The country of such a word.
std::string countryCalled(const std::string& word);

// The entry with the country in place of its placeholder.
std::string pathOf(const std::string& entry, const std::string& country);

// The name in an entry's path that holds the placeholder: DIRECTORY/ BEFORE <country> AFTER /...
struct PlaceholderPart {
  std::string directory;  // With a slash at its end, or empty.
  std::string before;
  std::string after;
};

PlaceholderPart placeholderPartOf(const std::string& entry);

// What stands in this name in the placeholder's place; empty when the name is another.
std::string codeIn(const std::string& name, const PlaceholderPart& part);
