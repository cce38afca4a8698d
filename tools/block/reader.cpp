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

// The hexadecimal text in a text of any format.
std::string hexTextIn(const std::string& text) {
  std::string digits = text;
  if (StartsWith(text, "{")) {
    const std::optional<Json::Value> document = documentIn(text);
    if (!document.has_value()) throw std::runtime_error("no block: the JSON document is not whole");
    digits = (*document)["bytes"].isString() ? (*document)["bytes"].asString() : text;
  } else if (StartsWith(text, kDumpHead)) {
    digits = bytesOfDump(text);
  } else if (text.find('{') != text.npos) {
    digits = bytesOfCArray(text);
  }
  if (isHexText(digits)) return digits;
  throw std::runtime_error("no block: a text, but in no format that build writes");
}

}  // namespace

Bytes readBlock(const std::string& input) {
  Bytes bytes = isText(input) ? readHexText(hexTextIn(input)) : Bytes(input.begin(), input.end());
  if (bytes.empty()) throw std::runtime_error("no block: the input is empty");
  if (bytes.size() > kBlockSize) {
    throw std::runtime_error("no block: " + std::to_string(bytes.size()) + " bytes, a block has " +
                             std::to_string(kBlockSize));
  }
  return bytes;
}
