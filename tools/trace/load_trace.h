// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "schema/antenna_selection.h"
#include "tools/block/fields.h"
#include "tools/probe/schema_probe.h"

// A load with everything that the device keeps to itself: which line of which file did what.

// Which of the two passes over the texts a line concerns.
enum class Pass { Selection, Calibration };

struct TracedLine {
  size_t number;  // Counted from 1.
  std::string text;
  Pass pass;  // Of the parameter that the line names, if any.
  LineEffect effect;
  bool lost;  // An error in a line before it ended the file's part in the pass.

  bool names() const {
    return effect.kind == LineEffect::Kind::Sets || effect.kind == LineEffect::Kind::Fails;
  }
};

struct TracedFile {
  std::string path;
  std::string content;
  std::vector<TracedLine> lines;
};

// Why a path gives no calibration file.
enum class Readability { Text, Empty, Missing, Directory, Unreadable };

struct TracedEntry {
  size_t number;  // Counted from 1.
  std::string text;
  std::string path;  // With the country in place of the placeholder.
  bool has_placeholder;
  bool fell_back;         // The default file was taken.
  std::string last_path;  // The path that was tried last, and what became of it.
  Readability readability;
  std::string reason;  // The system's word for Unreadable.
  std::optional<size_t> file;
};

struct TracedPathFile {
  std::string path;
  Readability readability;
  std::vector<TracedEntry> entries;
};

// A line of one of the files.
struct LineRef {
  size_t file;
  size_t line;  // Its index.
};

struct TracedParameter {
  std::string key;
  Pass pass;
  std::vector<LineRef> settings;  // In the order of reading: the last one wins.
  const Parameter* facts;         // Null for an antenna's name.
};

struct LoadTrace {
  std::string country;
  std::vector<TracedPathFile>
      path_files;  // Those that were tried; the last one decided if `decided`.
  bool decided = false;
  std::vector<TracedFile> files;
  bool selected = false;  // Both antennas have names.
  antenna_selection selection;
  std::vector<TracedParameter> parameters;  // In the order of the two trees.
  std::vector<std::string> missing;         // As the device reports them.
  std::optional<Bytes> block;
  std::string problem;  // Why there is no block.

  const TracedPathFile& deciding() const { return path_files.back(); }
  const TracedLine& at(const LineRef& ref) const { return files[ref.file].lines[ref.line]; }
  // The parameter that the line names.
  const TracedParameter& parameterOf(const TracedLine& line) const;
  // "path:number"
  std::string placeOf(const LineRef& ref) const;
};

// Follows a load with this country code; the path files are those of the properties as set.
LoadTrace traceLoad(const std::string& country);

// What a file is, and the system's word for Unreadable in `reason`.
Readability readabilityOf(const std::string& path, std::string& reason);

// The lines of a text as the library takes them.
std::vector<std::string> linesOf(const std::string& text);
