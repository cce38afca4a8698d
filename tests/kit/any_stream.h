// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <istream>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
#include <utility>

// The input streams that a node may be handed. It must read the same from each.
enum class StreamKind { Input, InputAndOutput, OneCharacterAtATime };

inline void PrintTo(StreamKind kind, std::ostream* out) {
  constexpr const char* kNames[] = {"string stream", "in and out", "one character at a time"};
  *out << kNames[static_cast<int>(kind)];
}

// A text whose buffer never holds more than one character. Can be sought in.
class TricklingBuffer : public std::streambuf {
 public:
  explicit TricklingBuffer(std::string text) : text_(std::move(text)) {}

 protected:
  int_type underflow() override {
    if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
    if (next_ == text_.size()) return traits_type::eof();
    current_ = text_[next_++];
    setg(&current_, &current_, &current_ + 1);
    return traits_type::to_int_type(current_);
  }

  pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode) override {
    off_type base = 0;
    if (from == std::ios_base::cur) base = static_cast<off_type>(position());
    if (from == std::ios_base::end) base = static_cast<off_type>(text_.size());
    return seekpos(base + offset, std::ios_base::in);
  }

  pos_type seekpos(pos_type position, std::ios_base::openmode) override {
    const auto offset = static_cast<off_type>(position);
    if (offset < 0 || static_cast<size_t>(offset) > text_.size()) return pos_type(off_type(-1));
    next_ = static_cast<size_t>(offset);
    setg(nullptr, nullptr, nullptr);
    return position;
  }

 private:
  size_t position() const { return next_ - static_cast<size_t>(egptr() - gptr()); }

  const std::string text_;
  size_t next_ = 0;
  char current_ = '\0';
};

class TricklingStream : private TricklingBuffer, public std::istream {
 public:
  explicit TricklingStream(const std::string& text)
      : TricklingBuffer(text), std::istream(static_cast<TricklingBuffer*>(this)) {}
};

inline std::unique_ptr<std::istream> streamOf(StreamKind kind, const std::string& text) {
  switch (kind) {
    case StreamKind::Input:
      return std::make_unique<std::istringstream>(text);
    case StreamKind::InputAndOutput:
      return std::make_unique<std::stringstream>(text);
    case StreamKind::OneCharacterAtATime:
      return std::make_unique<TricklingStream>(text);
  }
  return nullptr;
}

// A suite whose tests run once for each kind of stream.
class AnyStream : public testing::TestWithParam<StreamKind> {
 protected:
  static std::unique_ptr<std::istream> stream(const std::string& text) {
    return streamOf(GetParam(), text);
  }
};

inline const auto kAllStreams =
    testing::Values(StreamKind::Input, StreamKind::InputAndOutput, StreamKind::OneCharacterAtATime);
