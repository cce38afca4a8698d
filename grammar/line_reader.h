// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <istream>
#include <string>
#include <string_view>

// A line that holds a '=', without its '\n'.
struct Line {
  std::string_view text;
  bool is_comment = false;   // "//", "#" or ";" stands before its first '='.
  bool may_hold_ccc = true;  // False when no "[CCC]" can be in it.
};

// Finds the lines of a stream that hold a '='. They are searched for in the stream's get area, so
// that the lines without one, most comments among them, cost next to nothing.
class LineReader {
 public:
  // The stream is borrowed.
  explicit LineReader(std::istream& input);

  // Moves to the next line with a '='; false when there is none up to the end of the stream, as
  // std::getline() tells it. The line stays until the next call.
  bool next(Line& line);

 private:
  // Where a character stands next: a text is searched for it once, not once per line.
  struct Mark {
    char character;
    const char* place = nullptr;
  };

  // Reads the line that the area does not hold whole. False at the end of the stream.
  bool readPartial();
  // True if any mark is in [begin, end), in a text that ends at `limit`. `begin` never goes back.
  bool holdsMark(const char* begin, const char* end, const char* limit);
  // Finds a line in the stream's get area, or consumes all whole lines there.
  bool findInArea(Line& line);

  std::istream& input;
  std::array<Mark, 4> marks{{{'#'}, {';'}, {'/'}, {'['}}};
  const char* nearest = nullptr;  // The first place of a mark.
  std::string partial;            // A line that the area does not hold whole.
};
