// SPDX-License-Identifier: Apache-2.0
#include "tools/block/reader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <stdexcept>

#include "tools/block/view.h"

namespace {

constexpr char kSeparators[] = " \t\r\n,:";
constexpr char kHexDigits[] = "0123456789abcdefABCDEF";

bool isOneOf(const char* set, char c) {
  return c != '\0' && std::strchr(set, c) != nullptr;
}

// No raw block looks like text: its reserved bytes are zero.
bool isText(const std::string& input) {
  return std::all_of(input.begin(), input.end(),
                     [](char c) { return (c >= ' ' && c <= '~') || isOneOf(kSeparators, c); });
}

bool isHexText(const std::string& input) {
  for (const char c : input) {
    if (!isOneOf(kSeparators, c) && !isOneOf(kHexDigits, c) && c != 'x' && c != 'X') return false;
  }
  return true;
}

size_t afterPrefix(const std::string& text, size_t at) {
  const bool prefixed = text[at] == '0' && at + 1 < text.size() && (text[at + 1] | 0x20) == 'x';
  return prefixed ? at + 2 : at;
}

uint8_t readByte(const std::string& text, size_t at) {
  const std::string digits = text.substr(std::min(at, text.size()), 2);
  if (digits.size() < 2 || !isOneOf(kHexDigits, digits[0]) || !isOneOf(kHexDigits, digits[1])) {
    throw std::runtime_error("hexadecimal text, but no two digits at character " +
                             std::to_string(at + 1));
  }
  return static_cast<uint8_t>(std::stoul(digits, nullptr, 16));
}

Bytes readHexText(const std::string& text) {
  Bytes bytes;
  for (size_t at = 0; at < text.size();) {
    if (isOneOf(kSeparators, text[at])) {
      ++at;
      continue;
    }
    at = afterPrefix(text, at);
    bytes.push_back(readByte(text, at));
    at += 2;
  }
  return bytes;
}

bool begins(const std::string& text, const std::string& beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

// The column of bytes in the rows after the head.
std::string bytesOfDump(const std::string& dump) {
  std::string bytes;
  size_t row = dump.find('\n');
  while (row != dump.npos && row + kDumpBytes < dump.size()) {
    const size_t end = std::min(dump.find('\n', row + 1), dump.size());
    const size_t begin = std::min(row + 1 + kDumpBytes, end);
    bytes += dump.substr(begin, std::min(kDumpWidth, end - begin)) + " ";
    row = dump.find('\n', end);
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
  if (begins(input, "{")) {
    digits = textMemberOf(input, "bytes");
  } else if (begins(input, kDumpHead)) {
    digits = bytesOfDump(input);
  } else if (input.find('{') != input.npos) {
    digits = bytesOfCArray(input);
  }
  return digits.has_value() && isHexText(*digits) ? digits : std::nullopt;
}

std::string readAll(int file, const std::string& path, size_t largest) {
  std::string all;
  char part[4096];
  ssize_t count = 0;
  while ((count = read(file, part, sizeof(part))) > 0 || (count < 0 && errno == EINTR)) {
    if (count > 0) all.append(part, static_cast<size_t>(count));
    if (all.size() > largest) throw std::runtime_error(path + " is too large");
  }
  if (count < 0) throw std::runtime_error("cannot read " + path + ": " + std::strerror(errno));
  return all;
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

std::string readInput(const std::string& path, size_t largest) {
  if (path == "-") return readAll(STDIN_FILENO, "the standard input", largest);
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) throw std::runtime_error("cannot open " + path + ": " + std::strerror(errno));
  try {
    std::string all = readAll(file, path, largest);
    close(file);
    return all;
  } catch (...) {
    close(file);
    throw;
  }
}
