// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <istream>
#include <streambuf>
#include <string_view>

// An input stream over a text in memory, which it reads in place. One stream can be pointed at one
// text after the other, which costs next to nothing, while a string stream is built and copies its
// text each time.
class TextStream : public std::istream {
 public:
  TextStream();
  explicit TextStream(std::string_view text);

  // Starts at the beginning of `text` with no error, numbers in decimal and white space skipped.
  // The text is borrowed and must stay while it is read.
  void setText(std::string_view text);

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
};
