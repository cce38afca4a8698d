// SPDX-License-Identifier: Apache-2.0
// How little the job may cost: one pass over each text, no tree, no log, no error told apart. It
// relies on the lines that select the antennas standing before those that name them, as no other
// contender does, and knows comments by their first character only.
#include <algorithm>
#include <string>
#include <string_view>

#include "benchmarks/calibration_files.h"
#include "benchmarks/contender.h"
#include "benchmarks/key_values.h"

namespace {

void parseLine(std::string_view line, KeyValues& values) {
  if (line.empty() || line[0] == '#' || line[0] == ';' || line[0] == '/') return;
  const size_t equal = line.find('=');
  if (equal == line.npos) return;
  const std::string_view key = line.substr(0, equal);
  const std::string_view value = line.substr(equal + 1);
  constexpr std::string_view kSelection = ".antenna_selection";
  const bool selects = key.size() == 3 + kSelection.size() && key.substr(3) == kSelection;
  selects ? values.select(key, value) : values.set(key, value);
}

void parse(std::string_view text, KeyValues& values) {
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    parseLine(text.substr(0, end), values);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

uint32_t load(uint8_t* block) {
  KeyValues values;
  std::string text;
  for (const CalibrationFile& file : listedFiles()) {
    if (readEither(file, [&](const std::string& path) { return readFile(path, text); })) {
      parse(text, values);
    }
  }
  return values.writeBlock(block);
}

const Entry entry("single pass", load);

}  // namespace
