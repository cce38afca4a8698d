// SPDX-License-Identifier: Apache-2.0
#include "tools/block/reader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace {

constexpr char kSeparators[] = " \t\r\n,:";
constexpr char kHexDigits[] = "0123456789abcdefABCDEF";

bool isOneOf(const char* set, char c) {
  return c != '\0' && std::strchr(set, c) != nullptr;
}

// No raw block looks like text: its reserved bytes are zero.
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

std::string readAll(int file, const std::string& path) {
  constexpr size_t kMostBytes = 65536;
  std::string all;
  char part[4096];
  ssize_t count = 0;
  while ((count = read(file, part, sizeof(part))) > 0 || (count < 0 && errno == EINTR)) {
    if (count > 0) all.append(part, static_cast<size_t>(count));
    if (all.size() > kMostBytes) throw std::runtime_error(path + " is too large for a block");
  }
  if (count < 0) throw std::runtime_error("cannot read " + path + ": " + std::strerror(errno));
  return all;
}

}  // namespace

Bytes readBlock(const std::string& input) {
  Bytes bytes = isHexText(input) ? readHexText(input) : Bytes(input.begin(), input.end());
  if (bytes.empty()) throw std::runtime_error("no block: the input is empty");
  if (bytes.size() > kBlockSize) {
    throw std::runtime_error("no block: " + std::to_string(bytes.size()) + " bytes, a block has " +
                             std::to_string(kBlockSize));
  }
  return bytes;
}

std::string readInput(const std::string& path) {
  if (path == "-") return readAll(STDIN_FILENO, "the standard input");
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) throw std::runtime_error("cannot open " + path + ": " + std::strerror(errno));
  try {
    std::string all = readAll(file, path);
    close(file);
    return all;
  } catch (...) {
    close(file);
    throw;
  }
}
