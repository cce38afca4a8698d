// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "loader/calibration.h"
#include "schema/ccc_calib.h"

// The result of one path file.
enum class ParseResult : uint8_t {
  NoCalibrationFiles = 0,  // No calibration file could be read: the next path file may have some.
  InvalidCalibration = 1,  // Files were read, but the calibration is wrong or lacks parameters.
  ValidCalibration = 2,    // The record is filled and complete.
};

// Appends the calibration files that the path file lists to `calibrations`, in its order, without
// those that cannot be read. True when `calibrations` then holds any.
bool read_calibrations(const std::string& path_file, const std::string& country_code,
                       std::vector<calibration>& calibrations);

// Parses the texts as one calibration, a later text winning over an earlier one, and checks it.
// `path_file` is for the log. Returns ValidCalibration and writes `calib`, or InvalidCalibration.
ParseResult parse_calibrations(const std::vector<calibration>& calibrations,
                               const std::string& path_file, ccc_calib& calib);

// Reads, parses and checks the calibration that the path file lists. Writes `calib` only for
// ValidCalibration; its 16- and 32-bit fields then hold the most significant byte first.
ParseResult parse_calib_from_file_path(const std::string& path_file,
                                       const std::string& country_code, ccc_calib& calib);
