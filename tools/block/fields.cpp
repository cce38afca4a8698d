// SPDX-License-Identifier: Apache-2.0
#include "tools/block/fields.h"

#include <algorithm>
#include <iterator>

namespace {

// A field left out of the table would leave a gap.
constexpr bool coverTheBlock() {
  size_t offset = 0;
  for (const BlockField& field : kBlockFields) {
    if (field.offset != offset) return false;
    offset = field.end();
  }
  return offset == kBlockSize;
}
static_assert(coverTheBlock());

bool isWiringOfChannel9(const Parameter& parameter) {
  return parameter.role != Role::Number && parameter.record_offset >= offsetof(ccc_calib, ch9);
}

}  // namespace

std::vector<const Parameter*> parametersFor(const antenna_selection& selection) {
  const bool shared = selection.ch5 == selection.ch9;
  std::vector<const Parameter*> parameters;
  for (const Parameter& parameter : kParameters) {
    if (!shared || !isWiringOfChannel9(parameter)) parameters.push_back(&parameter);
  }
  return parameters;
}

bool hasSelector(Role role, uint64_t number) {
  if (role != Role::SelectorLine && role != Role::SelectorLevel) return true;
  return std::any_of(std::begin(kSelectors), std::end(kSelectors), [&](const Selector& selector) {
    return (role == Role::SelectorLine ? selector.line : selector.level) == number;
  });
}

const Selector* selectorOf(uint8_t code) {
  for (const Selector& selector : kSelectors) {
    if (selector.code == code) return &selector;
  }
  return nullptr;
}

uint32_t numberIn(const Bytes& block, const BlockField& field) {
  uint32_t number = 0;
  for (size_t i = field.offset; i < field.end(); ++i) number = number << 8 | block.at(i);
  return number;
}
