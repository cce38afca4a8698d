// SPDX-License-Identifier: Apache-2.0
#include "tools/probe/calibration_text.h"

#include "tools/probe/schema_probe.h"
#include "tools/text/text.h"

namespace {

constexpr char kHead[] =
    "# Made from a block. The antennas' names are not in a block: those here are invented.\n";

// The number that the text must give to a parameter for its field of the block.
uint32_t numberFor(const Parameter& parameter, const Bytes& block) {
  const uint32_t number = numberIn(block, parameter.field());
  if (parameter.role == Role::Number) return number;
  if (parameter.role == Role::Port) return static_cast<uint8_t>(number - 1);
  const Selector& selector = *selectorOf(static_cast<uint8_t>(number));
  return parameter.role == Role::SelectorLine ? selector.line : selector.level;
}

std::string line(const std::string& key, const std::string& value) {
  return key + "=" + value + "\n";
}

}  // namespace

std::string calibrationTextOf(const Bytes& block) {
  const antenna_selection names{"ant5", "ant9"};
  const SchemaProbe selection = selectionProbe();
  std::string text =
      kHead + line(selection.keys().at(0), names.ch5) + line(selection.keys().at(1), names.ch9);
  const SchemaProbe calibration = calibrationProbe(names);
  const std::vector<const Parameter*> parameters = parametersFor(names);
  for (size_t i = 0; i < parameters.size(); ++i) {
    text += line(calibration.keys().at(i), std::to_string(numberFor(*parameters[i], block)));
  }
  return text;
}
