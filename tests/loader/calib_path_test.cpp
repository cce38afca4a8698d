// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_path.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

TEST(CalibPathFind, PositionOfThePlaceholder) {
  const struct {
    const char* path;
    std::string::size_type position;
  } rows[] = {{"<country>", 0},          {"/vendor/etc/uwb/<country>/calib.conf", 16},
              {"calib_<country>", 6},    {"<<country>>", 1},
              {"<country><country>", 0}, {"/<count/<country>/<country>", 8}};
  for (const auto& row : rows) {
    EXPECT_EQ(CalibPath::findCountryCodeComponent(row.path), row.position) << row.path;
  }
  for (const char* path :
       {"", "<", "<country", "country>", "/vendor/etc/country/calib.conf", "<COUNTRY>", "<Country>",
        "< country>", "<country >", "{country}", "<coun\ntry>"}) {
    EXPECT_EQ(CalibPath::findCountryCodeComponent(path), std::string::npos) << path;
  }
}

TEST(CalibPathFind, NulIsAnOrdinaryCharacter) {
  EXPECT_EQ(CalibPath::findCountryCodeComponent(std::string("a\0<country>", 11)), 2U);
}

TEST(CalibPathSet, CodeTakesThePlaceOfThePlaceholderAtThePosition) {
  const struct {
    const char* entry;
    std::string::size_type position;
    const char* code;
    const char* path;
  } rows[] = {
      {"/uwb/<country>/calib.conf", 5, "fr", "/uwb/fr/calib.conf"},
      {"<country>", 0, "default", "default"},
      {"a<country>", 1, "a_long_country_code", "aa_long_country_code"},
      {"<country>b", 0, "x", "xb"},
      {"/<country>/A", 1, "US", "/us/A"},
      {"/<country>/a", 1, "", "/unknown/a"},
      {"<country>/<country>", 0, "fr", "fr/<country>"},
      {"<country>/<country>", 10, "fr", "<country>/fr"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CalibPath::setCountryCodeComponent(row.entry, row.position, row.code), row.path);
  }
  // The code is not checked.
  for (const char* code : {"../x", ".", " ", "a/b", "%s", "<country>", "\xc3\x89"}) {
    EXPECT_EQ(CalibPath::setCountryCodeComponent("/<country>/a", 1, code),
              std::string("/") + code + "/a");
  }
}

TEST(CalibPathLowercase, ChangesCapitalsOfAsciiOnly) {
  for (int byte = 0; byte < 256; ++byte) {
    const bool capital = byte >= 65 && byte <= 90;
    const std::string text(1, static_cast<char>(byte));
    const std::string lowered(1, static_cast<char>(capital ? byte + 32 : byte));
    EXPECT_EQ(CalibPath::lowercase(text), lowered) << byte;
  }
}

TEST(CalibPathLowercase, ChangesEveryCharacter) {
  EXPECT_EQ(CalibPath::lowercase("AZaz09@[`{ Us_uS"), "azaz09@[`{ us_us");
  EXPECT_EQ(CalibPath::lowercase(std::string("A\0B", 3)), std::string("a\0b", 3));
  EXPECT_EQ(CalibPath::lowercase(""), "");
}

TEST(CalibPath, CarriesNoData) {
  EXPECT_TRUE(std::is_empty_v<CalibPath>);
}

}  // namespace
