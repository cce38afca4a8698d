// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <istream>
#include <string>
#include <string_view>

// A line that holds a '=', without its '\n'.
struct Line {
  std::string_view text;
  bool is_comment = false;  // "//", "#" or ";" stands before its first '='.
  bool has_bracket = false;
};

// Finds the lines of a stream that hold a '='. They are searched for in the stream's get area, so
// that the lines without one, most comments among them, cost next to nothing.
class LineReader {
 public:
  // The stream is borrowed.
  explicit LineReader(std::istream& input) : input(input) {}

  // Moves to the next line with a '='; false when there is none up to the end of the stream, as
  // std::getline() tells it. The line stays until the next call.
  bool next(Line& line);

 private:
  // A line [begin, end) with its first '=', in a text that ends at `limit`.
  struct Place {
    const char* begin;
    const char* equal;
    const char* end;
    const char* limit;
  };

  // Where the characters stand next that tell what a line is. A text is searched for each of them
  // once, not once per line.
  struct NextMarks {
    const char* hash = nullptr;
    const char* semicolon = nullptr;
    const char* slash = nullptr;
    const char* bracket = nullptr;
    const char* nearest = nullptr;
    const char* limit = nullptr;
  };

  // Finds a line in the stream's get area, or consumes all whole lines there.
  bool findInArea(Place& place);
  // Reads the line that the area does not hold whole. False at the end of the stream.
  bool readPartial(Place& place);
  Line judge(const Place& place);
  void searchMarks(const Place& place);

  std::istream& input;
  NextMarks marks;
  std::string partial;
};
