// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// 0x and at least `digits` upper-case hexadecimal digits.
std::string hex(uint32_t number, int digits);

// Two lower-case digits, as in a dump.
std::string hexByte(uint8_t byte);

// The text with blanks after it, or before it, until it is `width` characters wide.
std::string padded(const std::string& text, size_t width);
std::string paddedLeft(const std::string& text, size_t width);

// The number of bytes of the UTF-8 character at `at`; 0 when there is none.
size_t characterLength(const std::string& text, size_t at);

bool isControl(uint8_t byte);

// The text without anything that a terminal acts on: a tab becomes one blank, a control character
// or a byte that is no UTF-8 becomes \xNN.
std::string printable(const std::string& text);

// How many characters wide a printable text is.
size_t widthOf(const std::string& printable_text);

// The parts between the separators; none of an empty text.
std::vector<std::string> split(const std::string& text, char separator);

std::string joined(const std::vector<std::string>& parts, const std::string& between);

// "1 file", "2 files".
std::string counted(size_t count, const std::string& thing);

// Writes text in colours, or plain.
class Paint {
 public:
  explicit Paint(bool in_colour) : in_colour_(in_colour) {}

  bool inColour() const { return in_colour_; }
  std::string bold(const std::string& text) const { return with("1", text); }
  std::string dim(const std::string& text) const { return with("2", text); }
  std::string red(const std::string& text) const { return with("1;31", text); }
  std::string green(const std::string& text) const { return with("1;32", text); }
  std::string magenta(const std::string& text) const { return with("1;35", text); }
  std::string cyan(const std::string& text) const { return with("1;36", text); }
  // `code` is a list of numbers of the terminal's "select graphic rendition".
  std::string with(const std::string& code, const std::string& text) const;

 private:
  const bool in_colour_;
};
