// SPDX-License-Identifier: Apache-2.0
#include "loader/android_properties.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "tests/kit/doubles.h"

namespace {

class AndroidPropertiesTest : public testing::Test {
 protected:
  void SetUp() override {
    clearProperties();
    takePropertyReads();
    takeLog();
  }
  void TearDown() override {
    EXPECT_LOG();
    clearProperties();
  }
};

TEST_F(AndroidPropertiesTest, UnsetOrEmptyPropertyHasNoValue) {
  for (int set = 0; set < 2; ++set) {
    EXPECT_EQ(AndroidProperties::getSystemProp("a.key"), std::nullopt);
    EXPECT_EQ(AndroidProperties::getCalibPathProp(), std::nullopt);
    EXPECT_EQ(AndroidProperties::getCountryCodeProp(), std::nullopt);
    for (const char* key : {"a.key", kPathsProperty, kCountryProperty}) setProperty(key, "");
  }
}

TEST_F(AndroidPropertiesTest, ValueIsReturnedAsStored) {
  for (const char* value : {"US", " US ", "uS\n", "/a,b:c d", "%s", "0"}) {
    setProperty("a.key", value);
    EXPECT_EQ(AndroidProperties::getSystemProp("a.key"), value);
  }
}

TEST_F(AndroidPropertiesTest, EachIsReadAfreshUnderItsKey) {
  for (const char* code : {"US", "FR"}) {
    setProperty(kPathsProperty, "/a/path");
    setProperty(kCountryProperty, code);
    EXPECT_EQ(AndroidProperties::getCalibPathProp(), "/a/path");
    EXPECT_EQ(AndroidProperties::getCountryCodeProp(), code);
    EXPECT_EQ(takePropertyReads(), (std::vector<std::string>{kPathsProperty, kCountryProperty}));
  }
}

TEST(AndroidProperties, CarriesNoData) {
  EXPECT_TRUE(std::is_empty_v<AndroidProperties>);
}

}  // namespace
