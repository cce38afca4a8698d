// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <istream>
#include <string>
#include <string_view>

// A line that holds a '=', without its '\n'. It lies in the memory of its reader and may be changed
// in place.
struct Line {
  char* begin = nullptr;
  char* equal = nullptr;  // Its first '='.
  char* end = nullptr;

  std::string_view key() const { return {begin, static_cast<size_t>(equal - begin)}; }
  std::string_view text() const { return {begin, static_cast<size_t>(end - begin)}; }
};

// Finds the lines of a stream that hold a '='. The stream is read in blocks, and each is searched
// for the next '=': the lines without one, most comments among them, cost next to nothing.
class LineReader {
 public:
  // The stream is borrowed, and read ahead of the lines that have been handed out.
  explicit LineReader(std::istream& input);

  // Moves to the next line with a '='; false when there is none up to the end of the stream. The
  // line stays until the next call, and a character may be written to its end.
  bool next(Line& line);

 private:
  // Finds the next line with a '=' among the complete lines.
  bool findLine(Line& line);
  // Drops the complete lines and reads on until there are others. False at the end of the stream.
  bool readLines();
  // Reads a block of text behind what has been read. False at the end of the stream.
  bool readBlock();
  // Gives the last line of the stream the '\n' that it lacks. False when nothing is left.
  bool endLastLine();

  std::istream& input;
  // The block holds, in this order: lines that are done with; complete lines, each with its '\n',
  // from `first` on; the beginning of a line, from `complete` on; room, from `filled` on.
  std::string block;
  size_t first = 0;
  size_t complete = 0;
  size_t filled = 0;
};
