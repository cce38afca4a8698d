// SPDX-License-Identifier: Apache-2.0
#include "tools/block/difference.h"

#include <algorithm>

namespace {

// The field's bytes, those that the block has.
Bytes part(const Bytes& block, const BlockField& field) {
  const auto begin = static_cast<ptrdiff_t>(std::min(field.offset, block.size()));
  const auto end = static_cast<ptrdiff_t>(std::min(field.end(), block.size()));
  return {block.begin() + begin, block.begin() + end};
}

}  // namespace

std::vector<const BlockField*> differingFields(const Bytes& a, const Bytes& b) {
  std::vector<const BlockField*> fields;
  for (const BlockField& field : kBlockFields) {
    if (part(a, field) != part(b, field)) fields.push_back(&field);
  }
  return fields;
}
