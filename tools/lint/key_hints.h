// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/trace/load_trace.h"

// What was probably meant by a key that no parameter of the load has.
struct KeyHint {
  std::vector<std::string> keys;  // One or two; none when nothing is near, or too many are.
  std::string text;               // "; did you mean 'a.port'?"
  bool of_channel = false;        // The antenna serves the other channel.
};

class KeyHints {
 public:
  explicit KeyHints(const LoadTrace& trace);

  KeyHint hintFor(const std::string& key) const;

 private:
  using Parts = std::vector<std::string>;

  // In small letters.
  struct Key {
    explicit Key(const std::string& key);

    Parts parts;  // Between the dots.
    Parts words;  // Between dots, underlines and blanks, sorted.
  };

  size_t partDistance(const std::string& part, const std::string& existing) const;
  size_t distanceOf(const Key& key, const Key& existing) const;
  KeyHint otherChannel(const std::string& key) const;
  std::vector<std::string> nearestTo(const std::string& key) const;

  const antenna_selection selection_;
  std::map<std::string, Key> keys_;
};
