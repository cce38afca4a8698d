// SPDX-License-Identifier: Apache-2.0
// A calibration text, read through both schemas.
#include <cstring>
#include <tuple>

#include "fuzz/support.h"
#include "schema/antenna_selection_pattern.h"
#include "schema/pattern.h"

namespace {

// More lines than this only take time: each is read by a tree of its own.
constexpr size_t kMostLines = 64;

constexpr const char* kNoValue = " = <undefined>";

bool endsWithNoValue(const std::string& line) {
  const size_t length = std::strlen(kNoValue);
  return line.size() >= length && line.compare(line.size() - length, length, kNoValue) == 0;
}

// What is set by each line on its own, the later ones over the earlier.
template <typename Tree, typename... Arguments>
std::vector<std::string> readLineByLine(const std::string& text, const Arguments&... arguments) {
  std::vector<std::string> merged = split(printed(Tree(arguments...)), '\n');
  for (const std::string& line : split(text, '\n')) {
    Tree tree(arguments...);
    if (!parse(tree, line)) break;
    const std::vector<std::string> set = split(printed(tree), '\n');
    for (size_t i = 0; i < set.size(); ++i) {
      if (!endsWithNoValue(set[i])) merged[i] = set[i];
    }
  }
  return merged;
}

// Leaves the text read into `tree`, which is a Tree made from `arguments`.
template <typename Tree, typename... Arguments>
void checkReading(Tree& tree, const std::string& text, const Arguments&... arguments) {
  const bool to_the_end = parse(tree, text);
  const std::string once = printed(tree);
  require(parse(tree, text) == to_the_end, "a text read again ends as before");
  require(printed(tree) == once, "a text read again changes nothing");
  // An antenna of that name would look like none.
  if (text.find("<undefined>") != text.npos || split(text, '\n').size() > kMostLines) return;
  require(readLineByLine<Tree>(text, arguments...) == split(once, '\n'),
          "what a line sets does not depend on the lines before it");
}

antenna_selection readSelection(const std::string& text) {
  AntennaSelectionPattern pattern;
  checkReading(pattern, text);
  std::vector<std::string> missing;
  if (!pattern.validate(missing, {})) return {"ant0", "ant1"};
  return pattern.toAntennaSelection(EndiannessConversion::SwapBytes);
}

auto channelFields(const antenna_calib& a) {
  return std::make_tuple(a.ant_delay, a.tx_power, a.pg_count, a.pg_delay);
}

auto wiringFields(const antenna_calib& a) {
  return std::make_tuple(a.selector_gpio, a.selector_gpio_value, a.port);
}

auto fields(const ccc_calib& c, bool same_antenna) {
  // Channel 9 has no wiring of its own on an antenna that it shares.
  const antenna_calib& wired9 = same_antenna ? c.ch5 : c.ch9;
  return std::make_tuple(c.version, channelFields(c.ch5), wiringFields(c.ch5), channelFields(c.ch9),
                         wiringFields(wired9), c.temperature_reference, c.xtal_trim,
                         c.wifi_coex_time_gap, c.ap_coop_mode, c.alternate_pulse_shape,
                         c.wifi_coex_min_spacing);
}

auto fieldsOver(Pattern& pattern, uint8_t fill) {
  std::memset(&pattern.calib, fill, sizeof(pattern.calib));
  pattern.toBuffer(EndiannessConversion::SwapBytes);
  return fields(pattern.calib, pattern.sameAntenna);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(data, data + size);
  const antenna_selection selection = readSelection(text);
  Pattern pattern(selection);
  checkReading(pattern, text, selection);
  std::vector<std::string> missing;
  const bool complete = pattern.validate(missing, {});
  require(complete == missing.empty(), "a parameter without a value is named");
  // A field that is not written shows what lay there before.
  require(complete == (fieldsOver(pattern, 0x00) == fieldsOver(pattern, 0xFF)),
          "every field is written when no parameter is missing, and only then");
  return 0;
}
