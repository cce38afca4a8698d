// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/lint/findings.h"
#include "tools/trace/load_trace.h"

// The checks. Each examines one load and adds its findings.

// Lines that set nothing: unknown keys, misplaced blanks, text without '='.
void checkLines(const LoadTrace& trace, Findings& findings);

// What follows '=': numbers, their spelling and range, text after them.
void checkValues(const LoadTrace& trace, Findings& findings);

// What the lines set together: selectors, ports, values set twice or never.
void checkParameters(const LoadTrace& trace, Findings& findings);

// The path files, their entries, and the files that these name.
void checkPathFiles(const LoadTrace& trace, Findings& findings);

// The place of a character of a traced line.
Place placeIn(const LoadTrace& trace, const LineRef& ref, size_t column = 1);

// Calls `visit` for every line of every file.
template <typename Visit>
void forEachLine(const LoadTrace& trace, const Visit& visit) {
  for (size_t file = 0; file < trace.files.size(); ++file) {
    for (size_t line = 0; line < trace.files[file].lines.size(); ++line) {
      visit(LineRef{file, line}, trace.files[file].lines[line]);
    }
  }
}

// Whether the text, after any blanks, is a comment.
bool beginsComment(const std::string& text);

// The number of blanks from `at` on.
size_t blanksAt(const std::string& text, size_t at);
