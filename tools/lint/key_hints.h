// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "tools/trace/load_trace.h"

// What was probably meant by a key that no parameter of the load has.
struct KeyHint {
  std::string key;   // The parameter's key; empty when nothing is near, or several keys are.
  std::string text;  // "; did you mean 'a.port'?"; empty when nothing is near.
};

class KeyHints {
 public:
  explicit KeyHints(const LoadTrace& trace);

  KeyHint hintFor(const std::string& key) const;

 private:
  struct Key {
    std::string text;
    std::vector<std::string> parts;  // In small letters.
  };

  bool has(const std::string& key) const;
  KeyHint otherChannel(const std::string& key) const;
  std::vector<std::string> nearestTo(const std::string& key) const;

  const antenna_selection selection_;
  std::vector<Key> keys_;
};
