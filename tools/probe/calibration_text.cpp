// SPDX-License-Identifier: Apache-2.0
#include "tools/probe/calibration_text.h"

#include <stdexcept>

#include "tools/probe/schema_probe.h"
#include "tools/text/text.h"

namespace {

constexpr char kHead[] =
    "# Made from a block. The antennas' names are not in a block: those here are invented.\n";

const Selector& selectorIn(const Bytes& block, const BlockField& field) {
  const uint32_t code = numberIn(block, field);
  const Selector* const selector = selectorOf(static_cast<uint8_t>(code));
  if (selector != nullptr) return *selector;
  throw std::runtime_error(std::string("no text gives ") + field.name + " the code " +
                           hex(code, 2));
}

// The number that the text must give to a parameter for its field of the block.
uint32_t numberFor(const Parameter& parameter, const Bytes& block) {
  const BlockField& field = parameter.field();
  switch (parameter.role) {
    case Role::Number:
      break;
    case Role::Port:
      return static_cast<uint8_t>(numberIn(block, field) - 1);
    case Role::SelectorLine:
      return selectorIn(block, field).line;
    case Role::SelectorLevel:
      return selectorIn(block, field).level;
  }
  return numberIn(block, field);
}

std::string line(const std::string& key, const std::string& value) {
  return key + "=" + value + "\n";
}

}  // namespace

std::string calibrationTextOf(const Bytes& block) {
  if (block.size() != kBlockSize) throw std::runtime_error("a text needs a whole block");
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
