// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "tests/kit/doubles.h"

// A whole load in its plain meaning, step by step.

// A path and the whole text of its file.
using LiteralFile = std::pair<std::string, std::string>;

// The text of a file, or nothing when it cannot be opened.
using ReadFile = std::function<std::optional<std::string>(const std::string& path)>;

class LiteralLoad {
 public:
  LiteralLoad(ReadFile read, std::string country);

  // The block, or nothing when there is none.
  Bytes run(const std::string& path_property);

  // The file that a line of a path file leads to.
  std::optional<LiteralFile> readEntry(const std::string& entry);

  // The block of some files' texts; nothing when they make none. Throws std::invalid_argument for
  // wiring that has no code. `path_file` is for the log.
  Bytes blockOf(const std::vector<LiteralFile>& files, const std::string& path_file);

  Log log;

 private:
  std::vector<LiteralFile> readPathFile(const std::string& path_file);
  std::optional<LiteralFile> readCalibration(const std::string& path);
  Bytes blockOrError(const std::vector<LiteralFile>& files, const std::string& name);

  const ReadFile read;
  const std::string country;
};
