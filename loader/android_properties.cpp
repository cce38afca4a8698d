// SPDX-License-Identifier: Apache-2.0
#include "loader/android_properties.h"

#include <android-base/properties.h>

std::optional<std::string> AndroidProperties::getSystemProp(const std::string& key) {
  std::string value = android::base::GetProperty(key, "");
  if (value.empty()) return std::nullopt;
  return value;
}

std::optional<std::string> AndroidProperties::getCalibPathProp() {
  return getSystemProp("ro.vendor.uwb.calibration.calibrationpaths");
}

std::optional<std::string> AndroidProperties::getCountryCodeProp() {
  return getSystemProp("vendor.uwb.calibration.country_code");
}
