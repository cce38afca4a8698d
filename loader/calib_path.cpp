// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_path.h"

#include <string_view>

constexpr std::string_view kPlaceholder = "<country>";

std::string::size_type CalibPath::findCountryCodeComponent(const std::string& path) {
  return path.find(kPlaceholder);
}

std::string CalibPath::setCountryCodeComponent(const std::string& entry,
                                               std::string::size_type position,
                                               const std::string& code) {
  std::string path = entry;
  path.replace(position, kPlaceholder.size(), code.empty() ? kUnknownCountry : lowercase(code));
  return path;
}

std::string CalibPath::lowercase(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  }
  return text;
}
