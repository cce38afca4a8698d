// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_parser.h"

#include <android/log.h>

#include <utility>

#include "loader/calib_path.h"

std::optional<calibration> CalibParser::parsePathFileEntry(const std::string& entry) {
  const std::string::size_type position = CalibPath::findCountryCodeComponent(entry);
  if (position == std::string::npos) {
    __android_log_print(ANDROID_LOG_INFO, nullptr, "No country placeholder, opening as-is");
    return parsePlainCalibFile(entry);
  }
  __android_log_print(ANDROID_LOG_INFO, nullptr,
                      "Calib path contains a country code placeholder, replacing it");
  return parseCountryCodeCalib(entry, position);
}

std::optional<calibration> CalibParser::parsePlainCalibFile(const std::string& path) {
  std::optional<std::string> text = reader.read(path);
  if (!text.has_value()) return std::nullopt;
  return calibration{path, std::move(*text)};
}

std::optional<calibration> CalibParser::parseCountryCodeCalib(const std::string& entry,
                                                              std::string::size_type position) {
  const std::string path = CalibPath::setCountryCodeComponent(entry, position, country_code);
  __android_log_print(ANDROID_LOG_INFO, nullptr, "Parsing calib file: %s", path.c_str());
  std::optional<calibration> result = parsePlainCalibFile(path);
  if (result.has_value()) return result;
  __android_log_print(ANDROID_LOG_ERROR, nullptr,
                      "Failed to reader calib file: %s, falling back to default", path.c_str());
  return parsePlainCalibFile(
      CalibPath::setCountryCodeComponent(entry, position, CalibPath::kDefaultCountry));
}
