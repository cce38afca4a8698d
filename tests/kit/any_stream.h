// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <istream>
#include <memory>
#include <sstream>
#include <string>

#include "tests/kit/piecewise_buffer.h"

// The input streams that a node may be handed. It must read the same from each.
enum class StreamKind { Input, InputAndOutput, OneCharacterAtATime };

inline void PrintTo(StreamKind kind, std::ostream* out) {
  constexpr const char* kNames[] = {"string stream", "in and out", "one character at a time"};
  *out << kNames[static_cast<int>(kind)];
}

class TricklingStream : private PiecewiseBuffer, public std::istream {
 public:
  explicit TricklingStream(const std::string& text)
      : PiecewiseBuffer(text, 1, Seeking::Back),
        std::istream(static_cast<PiecewiseBuffer*>(this)) {}
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
