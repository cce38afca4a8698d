// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_loading.h"

#include <android/log.h>

#include <optional>
#include <string_view>
#include <utility>

#include "loader/calib_parser.h"
#include "loader/path_file.h"
#include "loader/pattern_run.h"
#include "loader/text_file.h"
#include "schema/antenna_selection_pattern.h"
#include "schema/pattern.h"

namespace {

std::optional<antenna_selection> parse_antenna_selection(
    const std::vector<calibration>& calibrations) {
  AntennaSelectionPattern pattern;
  __android_log_print(ANDROID_LOG_INFO, nullptr, "Parsing antenna selection");
  if (!parse_pattern(pattern, calibrations)) {
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "Failed to parse antenna selection");
    return std::nullopt;
  }
  if (!validate_pattern(pattern)) return std::nullopt;
  return pattern.toAntennaSelection(kMostSignificantByteFirst);
}

void copy_wiring(const antenna_calib& from, antenna_calib& to) {
  to.selector_gpio = from.selector_gpio;
  to.selector_gpio_value = from.selector_gpio_value;
  to.port = from.port;
}

std::optional<ccc_calib> parse_full_calibration(const antenna_selection& selection,
                                                const std::vector<calibration>& calibrations,
                                                const std::string& path_file) {
  Pattern pattern(selection);
  __android_log_print(ANDROID_LOG_INFO, nullptr, "Parsing full calibration");
  if (!parse_pattern(pattern, calibrations)) {
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "Failed to parse calibration from %s",
                        path_file.c_str());
    return std::nullopt;
  }
  if (!validate_pattern(pattern)) return std::nullopt;
  pattern.toBuffer(kMostSignificantByteFirst);
  // The files state the wiring of a shared antenna once, for channel 5.
  if (pattern.sameAntenna) copy_wiring(pattern.calib.ch5, pattern.calib.ch9);
  return pattern.calib;
}

}  // namespace

bool read_calibrations(const std::string& path_file, const std::string& country_code,
                       std::vector<calibration>& calibrations) {
  // Throws when memory is short: a list without its rest must not pass for a whole one.
  const std::optional<std::string> text = read_text_file(path_file);
  if (!text.has_value()) {
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "Failed to open path file: %s",
                        path_file.c_str());
    return false;
  }
  CalibReader reader;
  CalibParser parser(reader, country_code);
  std::string_view rest = *text;
  for (std::string entry; next_entry(rest, entry);) {
    __android_log_print(ANDROID_LOG_INFO, nullptr, "Reading entry: %s", entry.c_str());
    std::optional<calibration> read = parser.parsePathFileEntry(entry);
    if (read.has_value()) calibrations.push_back(std::move(*read));
  }
  return !calibrations.empty();
}

ParseResult parse_calibrations(const std::vector<calibration>& calibrations,
                               const std::string& path_file, ccc_calib& calib) {
  const std::optional<antenna_selection> selection = parse_antenna_selection(calibrations);
  if (!selection.has_value()) return ParseResult::InvalidCalibration;
  const std::optional<ccc_calib> parsed =
      parse_full_calibration(*selection, calibrations, path_file);
  if (!parsed.has_value()) return ParseResult::InvalidCalibration;
  calib = *parsed;
  return ParseResult::ValidCalibration;
}

ParseResult parse_calib_from_file_path(const std::string& path_file,
                                       const std::string& country_code, ccc_calib& calib) {
  __android_log_print(ANDROID_LOG_INFO, nullptr, "Reading path file %s", path_file.c_str());
  std::vector<calibration> calibrations;
  if (!read_calibrations(path_file, country_code, calibrations)) {
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "Unable to read any calibration file from: %s",
                        path_file.c_str());
    return ParseResult::NoCalibrationFiles;
  }
  __android_log_print(ANDROID_LOG_INFO, nullptr, "Found %zu calibration files in %s",
                      calibrations.size(), path_file.c_str());
  return parse_calibrations(calibrations, path_file, calib);
}
