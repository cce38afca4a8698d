// SPDX-License-Identifier: Apache-2.0
#include "loader/pattern_run.h"

#include <android/log.h>

#include <exception>
#include <sstream>

namespace {

bool parse_file(AstRoot& tree, const calibration& file) {
  __android_log_print(ANDROID_LOG_INFO, nullptr, "Parsing %s", file.path.c_str());
  try {
    std::istringstream text(file.content);
    tree.parse(text);
    return true;
  } catch (const std::exception& e) {
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "Failed to parse calb file %s, reason %s",
                        file.path.c_str(), e.what());
    return false;
  }
}

}  // namespace

bool parse_pattern(AstRoot& tree, const std::vector<calibration>& calibrations) {
  bool parsed = false;
  for (const calibration& file : calibrations) {
    if (parse_file(tree, file)) parsed = true;
  }
  return parsed;
}

bool validate_pattern(AstRoot& tree) {
  std::vector<std::string> missing;
  if (tree.validate(missing, {})) return true;
  __android_log_print(ANDROID_LOG_ERROR, nullptr, "Calibration is invalid, missing params: ");
  for (const std::string& name : missing) {
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "- %s", name.c_str());
  }
  return false;
}
