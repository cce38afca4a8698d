// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "schema/antenna_selection.h"
#include "tools/block/fields.h"
#include "tools/probe/schema_probe.h"

// A load with what no log of a device tells: which line of which file did what.

// The texts are read twice: for the antennas' names, then for everything else.
enum class Pass { Selection, Calibration };

struct TracedLine {
  size_t number = 0;  // Counted from 1.
  std::string text;
  Pass pass = Pass::Selection;      // Of the parameter that the line names, if any,
  std::optional<size_t> parameter;  // and its index in LoadTrace::parameters.
  LineEffect effect;
  bool lost = false;  // The device stopped reading the file at an earlier line in this pass.
};

struct TracedFile {
  std::string path;
  std::string content;
  std::vector<TracedLine> lines;
};

// What a path leads to. The library reads a directory as an empty file.
enum class FileKind { Text, Empty, Directory, Missing, Unreadable };

struct FileStatus {
  FileKind kind = FileKind::Missing;
  std::string reason;  // The system's word for Unreadable.
};

struct TracedEntry {
  size_t number = 0;  // Counted from 1.
  std::string text;
  bool has_placeholder = false;
  std::string path;            // With the country in place of the placeholder.
  std::string last_path;       // The path that was tried last,
  FileStatus status;           // and what it leads to.
  bool fell_back = false;      // The default file was read.
  std::optional<size_t> file;  // The index in LoadTrace::files of what was read.
};

struct TracedPathFile {
  std::string path;
  FileStatus status;
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
  std::vector<TracedPathFile> path_files;  // Those that were tried, the deciding one last.
  bool decided = false;                    // One of them named a file that could be read.
  std::vector<TracedFile> files;
  bool selected = false;  // Both antennas have names.
  antenna_selection selection;
  std::vector<TracedParameter> parameters;  // In the order of the two trees.
  std::vector<std::string> missing;         // As the device reports them.
  std::optional<Bytes> block;
  std::string problem;  // Why there is no block.

  const TracedPathFile& deciding() const { return path_files.back(); }
  const TracedLine& at(const LineRef& ref) const { return files[ref.file].lines[ref.line]; }
  // The parameter that the line names, which must name one.
  const TracedParameter& parameterOf(const TracedLine& line) const;
  // "path:number"
  std::string placeText(const LineRef& ref) const;
};

// Follows a load with this country code. The path files depend on the property, as in a load.
LoadTrace traceLoad(const std::string& country);

FileStatus fileStatus(const std::string& path);

// The lines of a text as the library reads them.
std::vector<std::string> linesOf(const std::string& text);
