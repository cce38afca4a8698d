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

bool isZero(const Bytes& block, const BlockField& field) {
  return std::all_of(block.begin() + static_cast<ptrdiff_t>(field.offset),
                     block.begin() + static_cast<ptrdiff_t>(std::min(field.end(), block.size())),
                     [](uint8_t byte) { return byte == 0; });
}

std::string bytesBetween(const Bytes& block, size_t first, size_t end) {
  std::string text;
  for (size_t i = first; i < std::min(end, block.size()); ++i) {
    text += (i == first ? "" : " ") + hexByte(block[i]);
  }
  return text;
}

std::string selectorMeaning(uint8_t code) {
  const Selector* const selector = selectorOf(code);
  if (selector == nullptr) return "no selector code: 0x01, 0x03, 0x04 or 0x0C";
  return "GPIO " + std::to_string(selector->line) + ", level " + std::to_string(selector->level);
}

std::string portMeaning(uint8_t port) {
  return port == 0 ? "port 255, wrapped around" : "port " + std::to_string(port - 1);
}

std::string reservedMeaning(const Bytes& block, const BlockField& field) {
  std::vector<std::string> places;
  for (size_t i = field.offset; i < std::min(field.end(), block.size()); ++i) {
    if (block[i] != 0) places.push_back(std::to_string(i));
  }
  return places.empty() ? "zero" : "not zero at " + joined(places, ", ");
}

// Calls `row` for each part of the block that fits into a row and belongs to one field.
void forEachRow(const Bytes& block,
                const std::function<void(const BlockField&, size_t, size_t)>& row) {
  for (const BlockField& field : kBlockFields) {
    for (size_t at = field.offset; at < std::min(field.end(), block.size());) {
      const size_t end = std::min({field.end(), block.size(), (at / kRow + 1) * kRow});
      // A number stays in one row.
      const size_t last =
          field.kind == FieldKind::Reserved ? end : std::min(field.end(), block.size());
      row(field, at, last);
      at = last;
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

char plainLetterOf(const BlockField& field) {
  if (field.kind == FieldKind::Reserved) return '.';
  return static_cast<char>('A' + (&field - kBlockFields));
}

std::string mapRow(const Bytes& block, size_t first, const Paint& paint) {
  std::string bytes = paddedLeft(std::to_string(first), 4) + "  ";
  std::string letters(6, ' ');
  for (size_t i = first; i < std::min(first + kRow, block.size()); ++i) {
    const BlockField& field = fieldAt(i);
    const bool field_goes_on = i + 1 < field.end();
    bytes += paint.with(colourOf(field), hexByte(block[i]) + (field_goes_on ? " " : ""));
    if (!field_goes_on) bytes += ' ';
    letters += std::string(1, plainLetterOf(field)) + "  ";
  }
  letters.erase(letters.find_last_not_of(' ') + 1);
  return bytes + "\n" + letters + "\n";
}

JsonValue fieldJson(const Bytes& block, const BlockField& field) {
  JsonMembers json = {{"name", field.name},
                      {"offset", field.offset},
                      {"size", field.size},
                      {"bytes", bytesOf(block, field)}};
  if (field.kind != FieldKind::Reserved) json.emplace_back("value", numberIn(block, field));
  const std::string meaning = meaningOf(block, field);
  if (!meaning.empty()) json.emplace_back("meaning", meaning);
  return json;
}

}  // namespace

std::string meaningOf(const Bytes& block, const BlockField& field) {
  if (!holds(block, field)) return "cut off";
  switch (field.kind) {
    case FieldKind::SelectorCode:
      return selectorMeaning(block[field.offset]);
    case FieldKind::Port:
      return portMeaning(block[field.offset]);
    case FieldKind::Reserved:
      return reservedMeaning(block, field);
    case FieldKind::Number:
      return field.size == sizeof(uint32_t) ? hex(numberIn(block, field), 8) : "";
    case FieldKind::Crc:
      return {};
  }
  return {};
}

bool isSuspect(const Bytes& block, const BlockField& field) {
  if (!holds(block, field)) return true;
  if (field.kind == FieldKind::SelectorCode) return selectorOf(block[field.offset]) == nullptr;
  return field.kind == FieldKind::Reserved && !isZero(block, field);
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

std::string dumpOf(const Bytes& block) {
  std::string out = kDumpHead;
  forEachRow(block, [&](const BlockField& field, size_t first, size_t end) {
    out += paddedLeft(std::to_string(first), 6) + "  " +
           padded(bytesBetween(block, first, end), kDumpWidth) + " " + field.name + "\n";
  });
  return out;
}

std::string hexOf(const Bytes& block) {
  std::string out;
  for (const uint8_t byte : block) out += hexByte(byte);
  return out + "\n";
}

std::string cArrayOf(const Bytes& block) {
  std::string out =
      "static const unsigned char uwb_params[" + std::to_string(block.size()) + "] = {\n";
  forEachRow(block, [&](const BlockField& field, size_t first, size_t end) {
    out += "    /* " + paddedLeft(std::to_string(first), 2) + " " + padded(field.name, 22) + "*/";
    for (size_t i = first; i < end; ++i) out += " 0x" + hexByte(block[i]) + ",";
    out += "\n";
  });
  return out + "};\n";
}

std::string letterOf(const BlockField& field, const Paint& paint) {
  return paint.with(colourOf(field), std::string(1, plainLetterOf(field)));
}

std::string mapOf(const Bytes& block, const Paint& paint) {
  std::string out = "      ";
  for (size_t column = 0; column < kRow; ++column) {
    out += paddedLeft(std::to_string(column), 2) + (column + 1 < kRow ? " " : "\n");
  }
  for (size_t first = 0; first < block.size(); first += kRow) out += mapRow(block, first, paint);
  return out;
}

JsonMembers jsonOf(const Bytes& block) {
  std::string digits = hexOf(block);
  digits.pop_back();
  std::vector<JsonValue> fields;
  for (const BlockField& field : kBlockFields) {
    if (holds(block, field)) fields.push_back(fieldJson(block, field));
  }
  return {{"bytes", digits}, {"fields", fields}};
}
