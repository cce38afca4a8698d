// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <istream>
#include <streambuf>
#include <string_view>

// An input stream that reads texts in memory where they lie, one after the other. Making a stream
// takes longer than reading a line, so one serves many lines.
class TextStream {
 public:
  // The stream at the beginning of `text`, with no error, no width, no exceptions, decimal numbers
  // and white space skipped. The text is borrowed and must stay while it is read.
  std::istream& over(std::string_view text);

 private:
  class Buffer final : public std::streambuf {
   public:
    void setText(std::string_view text);

   protected:
    pos_type seekoff(off_type offset, std::ios_base::seekdir from,
                     std::ios_base::openmode which) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override;
  };

  Buffer buffer;
  std::istream stream{&buffer};
};
