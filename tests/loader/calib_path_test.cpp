// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_path.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

constexpr auto kNone = std::string::npos;

TEST(CalibPathFind, PositionOfThePlaceholder) {
  const struct {
    const char* path;
    std::string::size_type position;
  } rows[] = {
      {"<country>", 0},
      {"<country>/calib.conf", 0},
      {"/vendor/etc/uwb/<country>/calib.conf", 16},
      {"a<country>b", 1},
      {"calib_<country>", 6},
      {"<<country>>", 1},
      {"<country><country>", 0},
      {"/<count/<country>/<country>", 8},
      {"", kNone},
      {"<", kNone},
      {"<country", kNone},
      {"country>", kNone},
      {"/vendor/etc/country/calib.conf", kNone},
      {"<COUNTRY>", kNone},
      {"<Country>", kNone},
      {"< country>", kNone},
      {"<country >", kNone},
      {"{country}", kNone},
      {"<coun\ntry>", kNone},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(CalibPath::findCountryCodeComponent(row.path), row.position) << row.path;
  }
}

TEST(CalibPathFind, NulIsAnOrdinaryCharacter) {
  EXPECT_EQ(CalibPath::findCountryCodeComponent(std::string("a\0<country>", 11)), 2U);
}

TEST(CalibPathSet, CodeTakesThePlaceOfThePlaceholder) {
  EXPECT_EQ(CalibPath::setCountryCodeComponent("/uwb/<country>/calib.conf", 5, "fr"),
            "/uwb/fr/calib.conf");
  EXPECT_EQ(CalibPath::setCountryCodeComponent("<country>", 0, "default"), "default");
  EXPECT_EQ(CalibPath::setCountryCodeComponent("a<country>", 1, "a_long_country_code"),
            "aa_long_country_code");
  EXPECT_EQ(CalibPath::setCountryCodeComponent("<country>b", 0, "x"), "xb");
}

TEST(CalibPathSet, CodeIsLowered) {
  EXPECT_EQ(CalibPath::setCountryCodeComponent("/<country>/A", 1, "US"), "/us/A");
}

TEST(CalibPathSet, NoCodeIsUnknown) {
  EXPECT_EQ(CalibPath::setCountryCodeComponent("/<country>/a", 1, ""), "/unknown/a");
}

TEST(CalibPathSet, OnlyThePlaceholderAtThePositionIsReplaced) {
  EXPECT_EQ(CalibPath::setCountryCodeComponent("<country>/<country>", 0, "fr"), "fr/<country>");
  EXPECT_EQ(CalibPath::setCountryCodeComponent("<country>/<country>", 10, "fr"), "<country>/fr");
}

TEST(CalibPathSet, CodeIsNotChecked) {
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
