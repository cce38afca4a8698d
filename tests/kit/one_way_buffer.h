// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <streambuf>
#include <string_view>

// Holds one character and cannot go back.
class OneWayBuffer : public std::streambuf {
 public:
  explicit OneWayBuffer(std::string_view text) : text_(text) {}

 protected:
  int_type underflow() override {
    if (text_.empty()) return traits_type::eof();
    character_ = text_.front();
    text_.remove_prefix(1);
    setg(&character_, &character_, &character_ + 1);
    return traits_type::to_int_type(character_);
  }

 private:
  std::string_view text_;
  char character_ = '\0';
};
