// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <streambuf>
#include <string_view>

// The characters that a stream buffer holds ready to be read, its get area. In a stream over a text
// in memory that is the whole rest of the text, so lines, names and numbers are found where they
// lie. What an area does not hold whole is read through the buffer's public functions.
//
// Its functions are protected. A derived class may take pointers to them and call them on any
// stream buffer; this class is derived for nothing else.
class GetArea : private std::streambuf {
 public:
  static std::string_view of(const std::streambuf& text) {
    const char* const next = (text.*&GetArea::gptr)();
    return {next, static_cast<size_t>((text.*&GetArea::egptr)() - next)};
  }

  // Consumes the first `count` characters of the area. Unlike gbump(), more than an int can count.
  static void skip(std::streambuf& text, size_t count) {  // cppcheck-suppress[constParameter]
    (text.*&GetArea::setg)((text.*&GetArea::eback)(), (text.*&GetArea::gptr)() + count,
                           (text.*&GetArea::egptr)());
  }
};
