// SPDX-License-Identifier: Apache-2.0
#include "loader/lib.h"

#include <android/log.h>

#include <exception>
#include <utility>

#include "include/tarnix_uwb_params_nfcc.h"
#include "loader/android_properties.h"
#include "loader/calib_loading.h"
#include "output/calib_converter.h"
#include "output/calib_writer.h"
#include "schema/antenna_selection_pattern.h"

// All data that is built when the library is loaded. Don't change the order here: it is the order
// of construction, and unloading destroys in reverse, so the antenna names outlive the path list.

antenna_selection AntennaSelectionPattern::selected;

namespace {

// NOLINTNEXTLINE(cert-err58-cpp): without memory to load a library there is nobody to tell.
const std::vector<std::string> default_path_files = {
    "/vendor/etc/uwb_calib_paths.conf",
    "/vendor/etc/calib_paths",
    "./uwb_calib_paths.conf",
    "./calib_paths",
};

std::string read_country_code() {
  std::string code = AndroidProperties::getCountryCodeProp().value_or("");
  if (code.empty()) {
    __android_log_print(ANDROID_LOG_WARN, nullptr, "No country code set");
  } else {
    __android_log_print(ANDROID_LOG_INFO, nullptr, "Using country code: %s", code.c_str());
  }
  return code;
}

uint32_t convert_and_write(const ccc_calib& calib, const std::string& path_file, void* buffer,
                           unsigned int capacity) {
  try {
    const ccc_params params = CalibConverter::convert(calib);
    __android_log_print(ANDROID_LOG_INFO, nullptr,
                        "Valid calibration was parsed from entries in %s", path_file.c_str());
    return write_calib_to_buffer(params, buffer, capacity);
  } catch (const std::exception& e) {
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "Unable to convert calib to params: %s",
                        e.what());
    return 0;
  }
}

// The result of the first path file that yields a calibration file, valid or not, decides.
uint32_t load_from_path_files(const std::vector<std::string>& path_files,
                              const std::string& country_code, void* buffer,
                              unsigned int capacity) {
  for (const std::string& path_file : path_files) {
    ccc_calib calib{};
    switch (parse_calib_from_file_path(path_file, country_code, calib)) {
      case ParseResult::NoCalibrationFiles:
        __android_log_print(ANDROID_LOG_ERROR, nullptr,
                            "Failed to read calibration files from %s, trying next path file",
                            path_file.c_str());
        continue;
      case ParseResult::InvalidCalibration:
        __android_log_print(ANDROID_LOG_ERROR, nullptr, "Calibration is invalid, aborting");
        return 0;
      case ParseResult::ValidCalibration:
        return convert_and_write(calib, path_file, buffer, capacity);
    }
  }
  __android_log_print(ANDROID_LOG_ERROR, nullptr,
                      "Did not find valid calibration values in any of the files");
  return 0;
}

}  // namespace

std::vector<std::string> build_paths() {
  std::vector<std::string> paths;
  if (std::optional<std::string> path = AndroidProperties::getCalibPathProp()) {
    paths.push_back(std::move(*path));
  }
  paths.insert(paths.end(), default_path_files.begin(), default_path_files.end());
  return paths;
}

extern "C" __attribute__((visibility("default"))) uint32_t load_uwb_params_from_files(
    void* buffer, unsigned int capacity) {
  __android_log_print(ANDROID_LOG_INFO, nullptr,
                      "load_uwb_params_from_files entry, version v1.2-RC1");
  if (buffer == nullptr) return 0;
  const std::vector<std::string> path_files = build_paths();
  const std::string country_code = read_country_code();
  return load_from_path_files(path_files, country_code, buffer, capacity);
}
