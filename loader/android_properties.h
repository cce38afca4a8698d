// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

// The system properties that steer a load. Each call reads afresh.
class AndroidProperties {
 public:
  // The property's value exactly as stored; nothing when it is unset or empty.
  static std::optional<std::string> getSystemProp(const std::string& key);

  // One extra path file, tried before the defaults.
  static std::optional<std::string> getCalibPathProp();

  // The country code that replaces the placeholder in calibration paths.
  static std::optional<std::string> getCountryCodeProp();
};
