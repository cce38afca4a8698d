// SPDX-License-Identifier: Apache-2.0
#include "tools/block/view.h"

#include <algorithm>
#include <array>
#include <functional>

namespace {

constexpr size_t kRow = 16;

bool holds(const Bytes& block, const BlockField& field) {
  return field.end() <= block.size();
}

std::string bytesBetween(const Bytes& block, size_t first, size_t end) {
  std::string text;
  for (size_t i = first; i < std::min(end, block.size()); ++i) {
    text += (i == first ? "" : " ") + hexByte(block[i]);
  }
  return text;
}

// The offsets of the field's bytes that are not zero.
std::vector<std::string> nonZeroIn(const Bytes& block, const BlockField& field) {
  std::vector<std::string> offsets;
  for (size_t i = field.offset; i < std::min(field.end(), block.size()); ++i) {
    if (block[i] != 0) offsets.push_back(std::to_string(i));
  }
  return offsets;
}

// Calls `row` for each part of the block that fits into a row and belongs to one field.
void forEachRow(const Bytes& block,
                const std::function<void(const BlockField&, size_t, size_t)>& row) {
  for (const BlockField& field : kBlockFields) {
    const size_t end = std::min(field.end(), block.size());
    for (size_t at = field.offset, next = 0; at < end; at = next) {
      // A number stays in one row.
      next = field.kind == FieldKind::Reserved ? std::min(end, (at / kRow + 1) * kRow) : end;
      row(field, at, next);
    }
  }
}

// Neighbours have different colours; reserved bytes have none.
std::string colourOf(const BlockField& field) {
  constexpr std::array<const char*, 6> kColours = {"30;46", "30;43", "30;42",
                                                   "30;45", "37;44", "30;47"};
  if (field.kind == FieldKind::Reserved) return "2";
  const auto index = static_cast<size_t>(&field - kBlockFields);
  return kColours[index % kColours.size()];
}

std::string mapRow(const Bytes& block, size_t first, const Paint& paint) {
  std::string bytes = StringPrintf("%4zu  ", first);
  std::string letters(6, ' ');
  for (size_t i = first; i < std::min(first + kRow, block.size()); ++i) {
    const BlockField& field = fieldAt(i);
    const bool field_goes_on = i + 1 < field.end();
    bytes += paint.with(colourOf(field), hexByte(block[i]) + (field_goes_on ? " " : ""));
    if (!field_goes_on) bytes += ' ';
    letters += letterOf(field, Paint(false)) + "  ";
  }
  letters.erase(letters.find_last_not_of(' ') + 1);
  return bytes + "\n" + letters + "\n";
}

}  // namespace

std::string meaningOf(const Bytes& block, const BlockField& field) {
  if (!holds(block, field)) return "cut off";
  const uint8_t first = block[field.offset];
  if (field.kind == FieldKind::SelectorCode) {
    const Selector* const selector = selectorOf(first);
    if (selector == nullptr) return "no selector code: 0x01, 0x03, 0x04 or 0x0C";
    return StringPrintf("GPIO %d, level %d", selector->line, selector->level);
  }
  if (field.kind == FieldKind::Port) {
    return first == 0 ? "port 255, wrapped around" : StringPrintf("port %d", first - 1);
  }
  if (field.kind == FieldKind::Reserved) {
    const std::string non_zero = Join(nonZeroIn(block, field), ", ");
    return non_zero.empty() ? "zero" : "not zero at " + non_zero;
  }
  const bool is_long = field.size == sizeof(uint32_t);
  return is_long ? hex(numberIn(block, field), 8) : "";
}

bool isSuspect(const Bytes& block, const BlockField& field) {
  if (!holds(block, field)) return true;
  if (field.kind == FieldKind::SelectorCode) return selectorOf(block[field.offset]) == nullptr;
  return field.kind == FieldKind::Reserved && !nonZeroIn(block, field).empty();
}

std::string bytesOf(const Bytes& block, const BlockField& field) {
  return bytesBetween(block, field.offset, field.end());
}

std::string valueOf(const Bytes& block, const BlockField& field) {
  if (!holds(block, field) || field.kind == FieldKind::Reserved) return {};
  const uint32_t number = numberIn(block, field);
  if (field.kind == FieldKind::Crc) return hex(number, 4);
  if (field.kind == FieldKind::SelectorCode) return hex(number, 2);
  return std::to_string(number);
}

std::vector<const BlockField*> differingFields(const Bytes& a, const Bytes& b) {
  std::vector<const BlockField*> fields;
  for (const BlockField& field : kBlockFields) {
    if (bytesOf(a, field) != bytesOf(b, field)) fields.push_back(&field);
  }
  return fields;
}

std::string describe(const Bytes& block, const BlockField& field) {
  const std::string meaning = meaningOf(block, field);
  return bytesOf(block, field) + " = " + valueOf(block, field) +
         (meaning.empty() ? "" : ", " + meaning);
}

std::string comparedValueOf(const Bytes& block, const BlockField& field) {
  if (!holds(block, field)) return meaningOf(block, field);
  if (field.kind == FieldKind::Reserved) return bytesOf(block, field);
  return field.size == sizeof(uint32_t) ? meaningOf(block, field) : valueOf(block, field);
}

std::string dumpOf(const Bytes& block) {
  std::string out = kDumpHead;
  forEachRow(block, [&](const BlockField& field, size_t first, size_t end) {
    const std::string bytes = padded(bytesBetween(block, first, end), kDumpWidth);
    out += StringPrintf("%6zu  %s %s\n", first, bytes.c_str(), field.name);
  });
  return out;
}

std::string hexOf(const Bytes& block) {
  std::string out;
  for (const uint8_t byte : block) out += hexByte(byte);
  return out;
}

std::string cArrayOf(const Bytes& block) {
  std::string out = StringPrintf("static const unsigned char uwb_params[%zu] = {\n", block.size());
  forEachRow(block, [&](const BlockField& field, size_t first, size_t end) {
    out += StringPrintf("    /* %2zu %-22s*/", first, field.name);
    for (size_t i = first; i < end; ++i) out += " 0x" + hexByte(block[i]) + ",";
    out += "\n";
  });
  return out + "};\n";
}

std::string letterOf(const BlockField& field, const Paint& paint) {
  const bool is_reserved = field.kind == FieldKind::Reserved;
  const auto letter = static_cast<char>(is_reserved ? '.' : 'A' + (&field - kBlockFields));
  return paint.with(colourOf(field), std::string(1, letter));
}

std::string mapOf(const Bytes& block, const Paint& paint) {
  std::string out = "      ";
  for (size_t column = 0; column < kRow; ++column) {
    out += StringPrintf("%2zu%c", column, column + 1 < kRow ? ' ' : '\n');
  }
  for (size_t first = 0; first < block.size(); first += kRow) out += mapRow(block, first, paint);
  return out;
}

Json::Value fieldJson(const Bytes& block, const BlockField& field) {
  Json::Value json;
  json["name"] = field.name;
  json["offset"] = field.offset;
  json["size"] = field.size;
  if (!holds(block, field)) return json;
  json["bytes"] = bytesOf(block, field);
  if (field.kind != FieldKind::Reserved) json["value"] = numberIn(block, field);
  const std::string meaning = meaningOf(block, field);
  if (!meaning.empty()) json["meaning"] = meaning;
  return json;
}

Json::Value jsonOf(const Bytes& block) {
  Json::Value json;
  json["bytes"] = hexOf(block);
  json["fields"] = Json::arrayValue;
  for (const BlockField& field : kBlockFields) {
    if (holds(block, field)) json["fields"].append(fieldJson(block, field));
  }
  return json;
}
