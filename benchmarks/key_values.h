// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "schema/ccc_calib.h"

// What every contender but the library needs behind its parser: takes keys and values, in the
// spelling of the files, and makes the block of them. Two dozen rows and a linear search suffice.
class KeyValues {
 public:
  // Takes the two keys that select an antenna, and no others.
  void select(std::string_view key, std::string_view value);

  // Takes the other keys, once both antennas are selected. Unknown ones are left out.
  void set(std::string_view key, std::string_view value);

  // All keys that `set` takes, for a parser that wants to be asked.
  std::vector<std::string> keys() const;

  // Writes the 82 bytes and returns their count; 0 when a key is missing or has a bad value.
  uint32_t writeBlock(uint8_t* block) const;

 private:
  struct Row;
  struct Table;
  static const Table kRoot;
  static const Table kChannel5;
  static const Table kChannel9;

  bool setIn(const Table& table, std::string_view key, std::string_view value);
  bool store(const Row& row, std::string_view value);

  std::string antenna5;
  std::string antenna9;
  ccc_calib calib{};
  uint32_t given = 0;  // A bit for each key that has a value.
  bool bad = false;
};
