// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <streambuf>
#include <string>
#include <utility>

// What a stream buffer knows of its place: nothing; the place; the place, and the way back to it.
enum class Seeking { Nothing, Telling, Back };

// A text of which at most `size` characters are ready at a time.
class PiecewiseBuffer : public std::streambuf {
 public:
  PiecewiseBuffer(std::string text, std::streamoff size, Seeking seeking)
      : text_(std::move(text)), size_(size), seeking_(seeking) {}

 protected:
  int_type underflow() override { return show(begin_ + (egptr() - eback()), 0); }

  pos_type seekoff(off_type, std::ios_base::seekdir, std::ios_base::openmode) override {
    return seeking_ == Seeking::Nothing ? off_type(-1) : begin_ + (gptr() - eback());
  }

  pos_type seekpos(pos_type place, std::ios_base::openmode) override {
    if (seeking_ != Seeking::Back) return pos_type(off_type(-1));
    show(place - place % size_, place % size_);
    return place;
  }

 private:
  // Makes the piece at `begin` ready, without the characters that are skipped.
  int_type show(off_type begin, off_type skipped) {
    begin_ = begin;
    char* const first = text_.data() + begin;
    setg(first, first + skipped, first + std::min(size_, off_type(text_.size()) - begin));
    return gptr() == egptr() ? traits_type::eof() : traits_type::to_int_type(*gptr());
  }

  std::string text_;
  const off_type size_;
  const Seeking seeking_;
  off_type begin_ = 0;
};
