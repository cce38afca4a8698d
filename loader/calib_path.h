// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// The country placeholder "<country>" in the path of a calibration file.
class CalibPath {
 public:
  // What replaces the placeholder when no country code is set, and in the path that is read when
  // the country has no file.
  static constexpr const char* kUnknownCountry = "unknown";
  static constexpr const char* kDefaultCountry = "default";

  // The position of the first placeholder, or std::string::npos. Capitals make no placeholder.
  static std::string::size_type findCountryCodeComponent(const std::string& path);

  // The entry with the placeholder at `position` replaced by the lowercased code, or by "unknown"
  // when the code is empty. The code is not checked: it goes into the path as it is.
  static std::string setCountryCodeComponent(const std::string& entry,
                                             std::string::size_type position,
                                             const std::string& code);

  // Lowers 'A' to 'Z' in any locale and keeps every other byte.
  static std::string lowercase(std::string text);
};
