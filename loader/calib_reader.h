// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

// Reads whole files.
class ICalibReader {
 public:
  virtual ~ICalibReader() = default;

  // The file's whole text, or nothing when it cannot be read.
  virtual std::optional<std::string> read(const std::string& path) = 0;
};

// Reads whole files of the file system. Logs why a file cannot be read.
class CalibReader : public ICalibReader {
 public:
  // A text ends where reading fails, so a directory has an empty one.
  std::optional<std::string> read(const std::string& path) override;
};
