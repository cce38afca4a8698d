// SPDX-License-Identifier: Apache-2.0
#include "loader/pattern_run.h"

#include <android/log.h>

#include <exception>

#include "grammar/text_stream.h"

namespace {

bool parse_file(AstRoot& tree, const std::string& path, std::istream& text) {
  __android_log_print(ANDROID_LOG_INFO, nullptr, "Parsing %s", path.c_str());
  try {
    tree.parse(text);
    return true;
  } catch (const std::exception& e) {
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "Failed to parse calb file %s, reason %s",
                        path.c_str(), e.what());
    return false;
  }
}

}  // namespace

bool parse_pattern(AstRoot& tree, const std::vector<calibration>& calibrations) {
  bool parsed = false;
  TextStream text;
  for (const calibration& file : calibrations) {
    if (parse_file(tree, file.path, text.over(file.content))) parsed = true;
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
