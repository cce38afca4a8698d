// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// What every contender but the library needs in front of its parser: which files to read.

// One line of a path file. `fallback` is the path for a country without a file of its own, empty
// when the line has no country in it.
struct CalibrationFile {
  std::string path;
  std::string fallback;
};

// The lines of the first path file that can be read: of the one that the property names, then of
// the defaults.
std::vector<CalibrationFile> listedFiles();

// Reads a file whole, replacing `text`. False when it cannot be read.
bool readFile(const std::string& path, std::string& text);

// Calls `read` with the file's path and, when that returns false, with its fallback.
template <typename Read>
bool readEither(const CalibrationFile& file, Read read) {
  return read(file.path) || (!file.fallback.empty() && read(file.fallback));
}
