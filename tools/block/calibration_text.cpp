// SPDX-License-Identifier: Apache-2.0
#include "tools/block/calibration_text.h"

#include <stdexcept>

#include "tools/block/selector_code.h"
#include "tools/probe/schema_map.h"
#include "tools/text/text.h"

namespace {

constexpr char kHead[] =
    "# Made from a block. The antennas' names are not in a block: those here are invented.\n";

// The number that the text must give to a parameter for its field of the block.
uint32_t numberFor(const ParameterPlace& place, const Bytes& block) {
  const BlockField& field = *place.field;
  const uint32_t number = numberIn(block, field);
  if (isOneOf(kWiringPorts, place.record_offset)) return static_cast<uint8_t>(number - 1);
  if (field.kind != FieldKind::SelectorCode) return number;
  const std::optional<Selector> selector = selectorOf(static_cast<uint8_t>(number));
  if (!selector.has_value()) {
    throw std::runtime_error(std::string("no text gives ") + field.name + " the code " +
                             hex(number, 2));
  }
  return isOneOf(kWiringLines, place.record_offset) ? selector->gpio : selector->level;
}

std::string line(const std::string& key, const std::string& value) {
  return key + "=" + value + "\n";
}

std::string selectionLines(const antenna_selection& names) {
  const SchemaProbe probe = selectionProbe();
  return line(probe.keys().at(0), names.ch5) + line(probe.keys().at(1), names.ch9);
}

}  // namespace

std::string calibrationTextOf(const Bytes& block) {
  if (block.size() != kBlockSize) throw std::runtime_error("a text needs a whole block");
  const antenna_selection names{"ant5", "ant9"};
  const SchemaProbe probe = calibrationProbe(names);
  const std::vector<std::optional<ParameterPlace>> places = placesOf(names, probe);
  std::string text = kHead + selectionLines(names);
  for (size_t parameter = 0; parameter < places.size(); ++parameter) {
    text +=
        line(probe.keys()[parameter], std::to_string(numberFor(places[parameter].value(), block)));
  }
  return text;
}
