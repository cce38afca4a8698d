// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "loader/calib_reader.h"
#include "loader/calibration.h"

// Turns one line of a path file into the calibration file that it names. Keeps nothing between
// lines. Every operation returns nothing when no file could be read; the log then says why.
class CalibParser {
 public:
  // Both are borrowed and must outlive the parser. `country_code` is empty when none is set.
  CalibParser(ICalibReader& reader, const std::string& country_code)
      : reader(reader), country_code(country_code) {}

  // The whole line is the path, blanks included. With a placeholder in it, the country's file is
  // read, or the "default" one when the country has none.
  std::optional<calibration> parsePathFileEntry(const std::string& entry);

  std::optional<calibration> parsePlainCalibFile(const std::string& path);
  std::optional<calibration> parseCountryCodeCalib(const std::string& entry,
                                                   std::string::size_type position);

 private:
  ICalibReader& reader;
  const std::string& country_code;
};
