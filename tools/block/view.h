// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/block/fields.h"
#include "tools/text/json.h"
#include "tools/text/text.h"

// A block in forms for people and programs. Fields that a cut block lacks are left out.

// What the field's value means; empty when its number says all.
std::string meaningOf(const Bytes& block, const BlockField& field);

// Whether the field holds a value that the library never writes. See checkCrc for the CRC.
bool isSuspect(const Bytes& block, const BlockField& field);

// The field's bytes that the block has, as in a dump.
std::string bytesOf(const Bytes& block, const BlockField& field);

// The field's number: hexadecimal for a code or a CRC, otherwise decimal.
std::string valueOf(const Bytes& block, const BlockField& field);

// The fields in which two blocks differ, and those that only one of them has completely.
std::vector<const BlockField*> differingFields(const Bytes& a, const Bytes& b);

// "bytes = value, meaning", without what there is not.
std::string describe(const Bytes& block, const BlockField& field);

// As valueOf, but hexadecimal for four bytes too; the bytes where they are no number.
std::string comparedValueOf(const Bytes& block, const BlockField& field);

// The head of a dump; the column and the width of its bytes.
constexpr char kDumpHead[] = "offset  bytes                                            field\n";
constexpr size_t kDumpBytes = 8;
constexpr size_t kDumpWidth = 48;

// One row for each field: offset, bytes, name.
std::string dumpOf(const Bytes& block);

// Hexadecimal digits.
std::string hexOf(const Bytes& block);

// A C array with one line of comment for each field.
std::string cArrayOf(const Bytes& block);

// The bytes as a map: each cell in its field's colour and labelled with its field's letter.
std::string mapOf(const Bytes& block, const Paint& paint);

// The letter that stands for a field in the map, in the field's colour.
std::string letterOf(const BlockField& field, const Paint& paint);

// {name, offset, size, bytes, value, meaning}
Json::Value fieldJson(const Bytes& block, const BlockField& field);

// {"bytes": hex, "fields": [...]}
Json::Value jsonOf(const Bytes& block);
