// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_reader.h"

#include <android/log.h>

#include <exception>

#include "loader/text_file.h"

std::optional<std::string> CalibReader::read(const std::string& path) {
  try {
    std::optional<std::string> text = read_text_file(path);
    if (!text.has_value()) {
      __android_log_print(ANDROID_LOG_ERROR, nullptr, "Unable to open file %s", path.c_str());
    }
    return text;
  } catch (const std::exception& e) {
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "Failed to parse calib from %s, reason: %s",
                        path.c_str(), e.what());
    return std::nullopt;
  }
}
