// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "loader/calibration.h"
#include "schema/antenna_selection.h"
#include "tools/block/fields.h"
#include "tools/probe/schema_probe.h"

// A load with what no log of a device tells: which line of which file did what.

struct TracedLine {
  size_t number = 0;  // Counted from 1.
  std::string text;
  std::optional<size_t> parameter;  // What the line names: an index in LoadTrace::parameters.
  LineEffect effect;
  // The device stopped reading the file at an earlier line. It reads files twice: for the antennas'
  // names, then for everything else.
  bool lost = false;
};

struct TracedFile {
  std::string path;
  std::string content;
  std::vector<TracedLine> lines;
};

// What a path leads to. The library reads a directory as an empty file. Special is a pipe, a socket
// or a device, which is not opened. Unreadable is what exists and gives no text.
enum class FileKind { Text, Empty, Directory, Missing, Special, Unreadable };

struct TracedPath {
  std::string path;
  FileKind kind = FileKind::Missing;
  std::string problem;  // "there is no PATH"; nothing for a text.
};

struct TracedEntry {
  size_t number = 0;  // Counted from 1.
  std::string text;
  bool has_placeholder = false;
  TracedPath own;                      // With the country in place of the placeholder.
  std::optional<TracedPath> fallback;  // The default's, where it was tried too.
  std::optional<size_t> file;          // The index in LoadTrace::files of what was read.

  bool fellBack() const { return fallback.has_value() && file.has_value(); }
  const TracedPath& last() const { return fallback.has_value() ? *fallback : own; }
};

struct TracedPathFile : TracedPath {
  std::string content;
  std::vector<TracedEntry> entries;
};

// A line of one of the files.
struct LineRef {
  size_t file;
  size_t line;  // Its index.
};

struct TracedParameter {
  std::string key;
  std::vector<LineRef> settings;  // In the order of reading: the last one wins.
  const Parameter* facts;         // Null for an antenna's name.
};

struct LoadTrace {
  std::string country;
  std::vector<TracedPathFile> path_files;  // Those that were tried, the deciding one last.
  bool decided = false;                    // One of them named a file that could be read.
  std::vector<std::shared_ptr<const TracedFile>> files;
  bool selected = false;  // Both antennas have names.
  antenna_selection selection;
  std::vector<TracedParameter> parameters;  // In the order of the two trees.
  std::vector<std::string> missing;         // As the device reports them.
  std::optional<Bytes> block;
  bool unknown = false;  // A file was not opened, so that a device may do otherwise.
  bool refused = false;  // A selector has a number that the converter refuses.
  std::string problem;   // Why there is no block.

  const TracedPathFile& deciding() const { return path_files.back(); }
  const TracedLine& at(const LineRef& ref) const { return files[ref.file]->lines[ref.line]; }
  // The parameter that the line names, which must name one.
  const TracedParameter& parameterOf(const TracedLine& line) const {
    return parameters.at(line.parameter.value());
  }
  // Where the value begins in the line, which must name a parameter.
  size_t valueIn(const TracedLine& line) const;
  // The lines at which the reading of a file ends.
  std::vector<LineRef> failing() const;
  // Those at which only the device's C++ library ends it: this program's reads the number.
  std::vector<LineRef> refusedByDevice() const;
  // Leaves out these lines and what they lose.
  void readAsDevice();
  // The value that the parameter has, which a line must set.
  const std::string& valueOf(const TracedParameter& parameter) const {
    return at(parameter.settings.back()).effect.value;
  }
  // Calls `visit` for every line of every file.
  template <typename Visit>
  void forEachLine(const Visit& visit) const {
    for (size_t file = 0; file < files.size(); ++file) {
      for (size_t line = 0; line < files[file]->lines.size(); ++line) {
        visit(LineRef{file, line}, files[file]->lines[line]);
      }
    }
  }
};

// Follows loads. What several of them read alike is looked at once.
class LoadTracer {
 public:
  // A load with this country code. The path files depend on the property, as in a load.
  LoadTrace trace(const std::string& country);

 private:
  void followFiles(LoadTrace& trace, const std::vector<calibration>& calibrations);

  // By path and the names of the antennas.
  std::map<std::array<std::string, 3>, std::shared_ptr<const TracedFile>> files_;
};

TracedPath tracePath(const std::string& path);

// Why nothing was read for an entry: "there is no a, and there is no b", "cannot read a: reason".
std::string whyNotRead(const TracedEntry& entry);
