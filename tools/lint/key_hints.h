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
  bool of_antenna = false;        // The text tells all: it is the same for all keys of an antenna.
};

class KeyHints {
 public:
  explicit KeyHints(const LoadTrace& trace);

  KeyHint hintFor(const std::string& key) const;

 private:
  KeyHint otherChannel(const std::string& key) const;
  std::vector<std::string> nearestTo(const std::string& key) const;

  const antenna_selection selection_;
  std::map<std::string, std::vector<std::string>> parts_;  // Of each key, in small letters.
};
