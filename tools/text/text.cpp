// SPDX-License-Identifier: Apache-2.0
#include "tools/text/text.h"

#include <algorithm>

namespace {

bool isContinuation(char c) {
  return (static_cast<uint8_t>(c) & 0xC0) == 0x80;
}

size_t sequenceLength(uint8_t first) {
  if (first >= 0xC2 && first <= 0xDF) return 2;
  if (first >= 0xE0 && first <= 0xEF) return 3;
  if (first >= 0xF0 && first <= 0xF4) return 4;
  return first < 0x80 ? 1 : 0;
}

// Overlong forms, surrogates and numbers above the last character of Unicode.
bool isForbidden(uint8_t first, uint8_t second) {
  return (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
         (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
}

// At least `least` digits.
std::string digitsOf(uint32_t number, size_t least, const char* set) {
  std::string digits;
  for (; number != 0 || digits.size() < least; number /= 16) {
    digits.insert(digits.begin(), set[number % 16]);
  }
  return digits;
}

}  // namespace

size_t characterLength(const std::string& text, size_t at) {
  const auto first = static_cast<uint8_t>(text[at]);
  const size_t length = sequenceLength(first);
  if (length == 0 || at + length > text.size()) return 0;
  for (size_t i = 1; i < length; ++i) {
    if (!isContinuation(text[at + i])) return 0;
  }
  if (length > 2 && isForbidden(first, static_cast<uint8_t>(text[at + 1]))) return 0;
  return length;
}

bool isControl(uint8_t byte) {
  return byte < 0x20 || byte == 0x7F;
}

std::string hex(uint32_t number, int digits) {
  return "0x" + digitsOf(number, static_cast<size_t>(digits), "0123456789ABCDEF");
}

std::string hexByte(uint8_t byte) {
  return digitsOf(byte, 2, "0123456789abcdef");
}

std::string padded(const std::string& text, size_t width) {
  const size_t wide = widthOf(text);
  return wide >= width ? text : text + std::string(width - wide, ' ');
}

std::string paddedLeft(const std::string& text, size_t width) {
  const size_t wide = widthOf(text);
  return wide >= width ? text : std::string(width - wide, ' ') + text;
}

std::string printable(const std::string& text) {
  std::string out;
  for (size_t at = 0; at < text.size();) {
    const size_t length = characterLength(text, at);
    const auto byte = static_cast<uint8_t>(text[at]);
    // U+0080 to U+009F are control characters too.
    const bool is_control = isControl(byte) || (byte == 0xC2 && length == 2 &&
                                                static_cast<uint8_t>(text[at + 1]) < 0xA0);
    if (byte == '\t') {
      out += ' ';
    } else if (length == 0 || is_control) {
      out += "\\x" + hexByte(byte);
    } else {
      out.append(text, at, length);
    }
    at += length == 0 || is_control ? 1 : length;
  }
  return out;
}

size_t widthOf(const std::string& printable_text) {
  size_t width = 0;
  for (const char c : printable_text) {
    if (!isContinuation(c)) ++width;
  }
  return width;
}

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (size_t begin = 0; begin < text.size();) {
    const size_t end = std::min(text.find(separator, begin), text.size());
    parts.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

std::string joined(const std::vector<std::string>& parts, const std::string& between) {
  std::string all;
  for (const std::string& part : parts) {
    if (&part != &parts.front()) all += between;
    all += part;
  }
  return all;
}

std::string counted(size_t count, const std::string& thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string Paint::with(const std::string& code, const std::string& text) const {
  return in_colour_ ? "\x1b[" + code + "m" + text + "\x1b[0m" : text;
}
