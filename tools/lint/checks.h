// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tools/lint/findings.h"
#include "tools/lint/key_hints.h"
#include "tools/trace/load_trace.h"

// What all rules find in these loads, which have been traced in the tree that is open.
Findings findingsOf(const std::vector<LoadTrace>& traces);

// The steps of that. Each looks at one load, or at one file of a load, and adds what it finds.

// The trees for the antennas that the loads select or seem to mean, by the names of both.
using Probes = std::map<std::pair<std::string, std::string>, SchemaProbe>;

// One file of a load, with the trees that take its lines.
struct CheckedFile {
  const LoadTrace& trace;
  const TracedFile& file;
  const Probes& probes;
  Findings& findings;
  const KeyHints hints = KeyHints(trace);
  const SchemaProbe selection = selectionProbe();
  const SchemaProbe& calibration = probes.at({trace.selection.ch5, trace.selection.ch9});

  // The key of the parameter that the line names; empty when it names none.
  std::string keyIn(const std::string& line) const;

  // At the line's byte `at`.
  void add(Rule rule, const TracedLine& line, size_t at, const std::string& message,
           const std::vector<std::string>& explains = {}, bool once = false) const;
};

// A selected antenna that no line has a key of, where lines have keys of another with a similar
// name. Returns the antennas that seem to be meant.
antenna_selection checkSelection(const LoadTrace& trace, Findings& findings);

// Lines that set nothing: unknown keys, blanks in the way, text without '='.
void checkLines(const CheckedFile& file);

// What stands after '=': numbers, their spelling and range, text after them.
void checkValues(const CheckedFile& file);

// Bytes that are no text. A byte order mark explains that no line sets `first_key`. Returns false
// when the file has no lines to check.
bool checkText(const std::string& path, const std::string& content, const std::string& first_key,
               Findings& findings);

// What the lines make together: selectors, ports, values set twice.
void checkParameters(const LoadTrace& trace, Findings& findings);

// The path files, their entries, and the files that these name.
void checkPathFiles(const LoadTrace& trace, Findings& findings);

// What is missing, and whether there is a block. What the checks above have found is the cause.
void checkOutcome(const LoadTrace& trace, size_t load, Findings& findings);

// Files that no load reads, and that lie beside one that a load asks for under a similar name.
void checkUnreadFiles(const std::vector<LoadTrace>& traces, Findings& findings);

// What they share.

constexpr char kBlanks[] = " \t\v\f\r";

// The place at byte `at` of a line or an entry that was traced.
template <typename Line>
Place placeIn(const std::string& path, const Line& line, size_t at = 0) {
  return {path, line.number, at + 1, line.text};
}

// Where the first character from `at` on stands that is no blank; the text's size if there is none.
size_t afterBlanks(const std::string& text, size_t at);

std::string withoutBlanks(std::string text);

// Whether a comment begins at the first character of `text` that is no blank.
bool beginsComment(const std::string& text);

bool hasByteOrderMark(const std::string& text);

// A message stays short even if a key or a value is very long.
std::string shortened(const std::string& word);
