// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/block/fields.h"
#include "tools/text/json.h"
#include "tools/text/text.h"

// What people read of a block. Blocks may be cut: what they lack is left out.

// What the field's value means beyond its number; empty when that is all.
std::string meaningOf(const Bytes& block, const BlockField& field);

// Whether the field holds what the library would never write. The CRC is looked at elsewhere.
bool isSuspect(const Bytes& block, const BlockField& field);

// The field's bytes, as a dump writes them; those that the block has.
std::string bytesOf(const Bytes& block, const BlockField& field);

// The field's number as people write it: a code or a CRC hexadecimal, anything else decimal.
std::string valueOf(const Bytes& block, const BlockField& field);

// One row for each field: offset, bytes, name.
std::string dumpOf(const Bytes& block);

// One line of hexadecimal digits.
std::string hexOf(const Bytes& block);

// A C array with one line of comment for each field.
std::string cArrayOf(const Bytes& block);

// The bytes as a map: each cell in its field's colour and labelled with its field's letter.
std::string mapOf(const Bytes& block, const Paint& paint);

// The letter that stands for a field in the map, in the field's colour.
std::string letterOf(const BlockField& field, const Paint& paint);

// {"bytes": hex, "fields": [{name, offset, size, bytes, value, meaning}]}
JsonMembers jsonOf(const Bytes& block);
