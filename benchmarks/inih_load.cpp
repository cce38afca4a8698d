// SPDX-License-Identifier: Apache-2.0
// The same job with inih. It hands out keys as it meets them, so the files are read twice: the
// names of the antennas must be known before the other keys mean anything. It reads the files with
// ".ini" after their names, which hold the same lines with the comment marks that it knows.
#include <ini.h>

#include "benchmarks/calibration_files.h"
#include "benchmarks/contender.h"
#include "benchmarks/key_values.h"

namespace {

int select(void* values, const char* /*section*/, const char* key, const char* value) {
  static_cast<KeyValues*>(values)->select(key, value);
  return 1;
}

int set(void* values, const char* /*section*/, const char* key, const char* value) {
  static_cast<KeyValues*>(values)->set(key, value);
  return 1;
}

void parseAll(const std::vector<CalibrationFile>& files, ini_handler handler, KeyValues& values) {
  for (const CalibrationFile& file : files) {
    // Below zero: the file cannot be opened. Above: the number of the first line with an error.
    readEither(file, [&](const std::string& path) {
      return ini_parse((path + ".ini").c_str(), handler, &values) >= 0;
    });
  }
}

uint32_t load(uint8_t* block) {
  const std::vector<CalibrationFile> files = listedFiles();
  KeyValues values;
  parseAll(files, select, values);
  parseAll(files, set, values);
  return values.writeBlock(block);
}

const Entry entry("inih", load);

}  // namespace
