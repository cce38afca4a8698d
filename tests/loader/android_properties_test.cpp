// SPDX-License-Identifier: Apache-2.0
#include "loader/android_properties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "tests/kit/log_capture.h"
#include "tests/kit/property_map.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kPathFile[] = "ro.vendor.uwb.calibration.calibrationpaths";
constexpr char kCountryCode[] = "vendor.uwb.calibration.country_code";

class AndroidPropertiesTest : public testing::Test {
 protected:
  void SetUp() override {
    clearProperties();
    takePropertyReads();
    takeLog();
  }
  void TearDown() override {
    EXPECT_THAT(takeLog(), IsEmpty());
    clearProperties();
  }
};

TEST_F(AndroidPropertiesTest, UnsetPropertyHasNoValue) {
  EXPECT_EQ(AndroidProperties::getSystemProp("a.key"), std::nullopt);
  EXPECT_EQ(AndroidProperties::getCalibPathProp(), std::nullopt);
  EXPECT_EQ(AndroidProperties::getCountryCodeProp(), std::nullopt);
}

TEST_F(AndroidPropertiesTest, EmptyPropertyHasNoValue) {
  setProperty(kPathFile, "");
  setProperty(kCountryCode, "");
  EXPECT_EQ(AndroidProperties::getCalibPathProp(), std::nullopt);
  EXPECT_EQ(AndroidProperties::getCountryCodeProp(), std::nullopt);
}

TEST_F(AndroidPropertiesTest, ValueIsReturnedAsStored) {
  for (const char* value : {"US", " US ", "uS\n", "/a,b:c d", "%s", "0"}) {
    setProperty("a.key", value);
    EXPECT_EQ(AndroidProperties::getSystemProp("a.key"), value);
  }
}

TEST_F(AndroidPropertiesTest, EachIsReadUnderItsKey) {
  setProperty(kPathFile, "/a/path");
  setProperty(kCountryCode, "US");
  EXPECT_EQ(AndroidProperties::getCalibPathProp(), "/a/path");
  EXPECT_EQ(AndroidProperties::getCountryCodeProp(), "US");
  AndroidProperties::getSystemProp("a.key");
  EXPECT_THAT(takePropertyReads(), ElementsAre(kPathFile, kCountryCode, "a.key"));
}

TEST_F(AndroidPropertiesTest, EveryCallReadsAfresh) {
  setProperty(kCountryCode, "US");
  EXPECT_EQ(AndroidProperties::getCountryCodeProp(), "US");
  setProperty(kCountryCode, "FR");
  EXPECT_EQ(AndroidProperties::getCountryCodeProp(), "FR");
  setProperty(kCountryCode, "");
  EXPECT_EQ(AndroidProperties::getCountryCodeProp(), std::nullopt);
}

TEST(AndroidProperties, CarriesNoData) {
  EXPECT_TRUE(std::is_empty_v<AndroidProperties>);
}

}  // namespace
