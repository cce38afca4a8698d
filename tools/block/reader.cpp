// SPDX-License-Identifier: Apache-2.0
#include "tools/block/reader.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <stdexcept>

#include "tools/block/view.h"

namespace {

constexpr char kSeparators[] = " \t\r\n,:";
constexpr char kHexDigits[] = "0123456789abcdefABCDEF";

// No raw block looks like text: its reserved bytes are zero.
bool isText(const std::string& input) {
  return std::all_of(input.begin(), input.end(), [](char c) {
    return (c >= ' ' && c <= '~') || c == '\t' || c == '\r' || c == '\n';
  });
}

bool isHexText(const std::string& input) {
  return input.find_first_not_of(std::string(kSeparators) + kHexDigits + "xX") == input.npos;
}

Bytes readHexText(const std::string& text) {
  Bytes bytes;
  for (size_t at = 0; (at = text.find_first_not_of(kSeparators, at)) != text.npos; at += 2) {
    if (text.compare(at, 2, "0x") == 0 || text.compare(at, 2, "0X") == 0) at += 2;
    const std::string digits = text.substr(at, 2);
    if (digits.size() < 2 || digits.find_first_not_of(kHexDigits) != digits.npos) {
      throw std::runtime_error("hexadecimal text, but no two digits at character " +
                               std::to_string(at + 1));
    }
    bytes.push_back(static_cast<uint8_t>(std::stoul(digits, nullptr, 16)));
  }
  return bytes;
}

// The column of bytes in the rows after the head.
std::string bytesOfDump(const std::string& dump) {
  std::string bytes;
  for (const std::string& row : linesOf(dump.substr(std::strlen(kDumpHead)))) {
    if (row.size() > kDumpBytes) bytes += row.substr(kDumpBytes, kDumpWidth) + " ";
  }
  return bytes;
}

// What is between the braces, without comments.
std::string bytesOfCArray(const std::string& source) {
  std::string list = source.substr(source.find('{') + 1);
  for (size_t at = 0; (at = list.find("/*", at)) != list.npos;) {
    const size_t end = list.find("*/", at);
    list.erase(at, end == list.npos ? end : end + 2 - at);
  }
  return list.substr(0, list.find('}'));
}

// The hexadecimal text in a text of any format; nothing when the input is none.
std::optional<std::string> hexTextIn(const std::string& input) {
  if (!isText(input)) return std::nullopt;
  if (isHexText(input)) return input;
  std::optional<std::string> digits;
  if (StartsWith(input, "{")) {
    const Json::Value document = documentIn(input).value_or(Json::objectValue);
    if (document["bytes"].isString()) digits = document["bytes"].asString();
  } else if (StartsWith(input, kDumpHead)) {
    digits = bytesOfDump(input);
  } else if (input.find('{') != input.npos) {
    digits = bytesOfCArray(input);
  }
  return digits.has_value() && isHexText(*digits) ? digits : std::nullopt;
}

}  // namespace

Bytes readBlock(const std::string& input) {
  const std::optional<std::string> text = hexTextIn(input);
  Bytes bytes = text.has_value() ? readHexText(*text) : Bytes(input.begin(), input.end());
  if (bytes.empty()) throw std::runtime_error("no block: the input is empty");
  if (bytes.size() > kBlockSize) {
    throw std::runtime_error("no block: " + std::to_string(bytes.size()) + " bytes, a block has " +
                             std::to_string(kBlockSize));
  }
  return bytes;
}
