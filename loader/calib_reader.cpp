// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_reader.h"

#include <android/log.h>

#include <exception>
#include <fstream>
#include <sstream>

CalibReader::~CalibReader() = default;

std::optional<std::string> CalibReader::read(const std::string& path) {
  std::ifstream file(path);
  if (!file.is_open()) {
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "Unable to open file %s", path.c_str());
    return std::nullopt;
  }
  try {
    std::ostringstream text;
    text << file.rdbuf();
    file.close();
    return text.str();
  } catch (const std::exception& e) {
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "Failed to parse calib from %s, reason: %s",
                        path.c_str(), e.what());
    return std::nullopt;
  }
}
