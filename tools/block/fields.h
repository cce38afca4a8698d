// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "output/ccc_params.h"

// What the bytes of a field stand for.
enum class FieldKind { Crc, Number, SelectorCode, Port, Reserved };

struct BlockField {
  const char* name;
  size_t offset;
  size_t size;
  FieldKind kind;

  size_t end() const { return offset + size; }
};

using Bytes = std::vector<uint8_t>;

constexpr size_t kBlockSize = sizeof(ccc_params);

// All fields of the block, in the order in which they lie.
const std::vector<BlockField>& blockFields();

// The field that covers the byte at `offset`.
const BlockField& fieldAt(size_t offset);

// The field's number in `block`, which must hold the whole field of at most four bytes.
uint32_t numberIn(const Bytes& block, const BlockField& field);
