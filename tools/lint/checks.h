// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tools/lint/findings.h"
#include "tools/trace/load_trace.h"

// The rules. Each looks at one load, or at one file of a load, and adds what it finds.

// Lines of files, by path and number.
using Lines = std::set<std::pair<std::string, size_t>>;

// One file of a load, with the trees that take its lines.
struct CheckedFile {
  CheckedFile(const LoadTrace& load, size_t file_of_load, const Lines& taken_by_any)
      : trace(load),
        file(*load.files[file_of_load]),
        taken(taken_by_any),
        selection(selectionProbe()),
        calibration(calibrationProbe(load.selection)) {}

  bool takes(const std::string& line) const;
  Place place(const TracedLine& line, size_t column = 1) const {
    return {file.path, line.number, column, line.text};
  }

  const LoadTrace& trace;
  const TracedFile& file;
  const Lines& taken;  // The lines that set something in any load.
  const SchemaProbe selection;
  const SchemaProbe calibration;
};

// Lines that set nothing: unknown keys, blanks in the way, text without '='.
void checkLines(const CheckedFile& file, Findings& findings);

// What stands after '=': numbers, their spelling and range, text after them.
void checkValues(const CheckedFile& file, Findings& findings);

// Bytes that are no text. `first_lost` is blamed on a byte order mark.
void checkText(const std::string& path, const std::string& content, const std::string& first_lost,
               Findings& findings);

// What the lines make together: selectors, ports, values set twice.
void checkParameters(const LoadTrace& trace, Findings& findings);

// The path files, their entries, and the files that these name.
void checkPathFiles(const LoadTrace& trace, Findings& findings);

// What is missing, and whether there is a block. To be called last: it names what the other checks
// have found as the cause. A key that is missing in loads with different last files is looked for
// at the path file.
void checkOutcome(const LoadTrace& trace, const std::set<std::string>& missing_in_many,
                  Findings& findings);

// Files that no load reads, and that lie beside one that a load asks for under a similar name.
void checkUnreadFiles(const std::vector<LoadTrace>& traces, Findings& findings);

bool hasByteOrderMark(const std::string& text);

// Whether a comment begins at the first character of `text` that is no blank.
bool beginsComment(const std::string& text);

// A message stays short even if a key or a value is very long.
std::string shortened(const std::string& word);

// The number of blanks from `at` on.
size_t blanksAt(const std::string& text, size_t at);
