// SPDX-License-Identifier: Apache-2.0
#include "grammar/plain_number.h"

#include <ios>

#include "grammar/white_space.h"

namespace {

using Traits = std::streambuf::traits_type;

// The value of a digit; for any other character, a number that is no digit in any base.
uint32_t digitOf(int c) {
  if (c >= '0' && c <= '9') return static_cast<uint32_t>(c - '0');
  // From 'g' or 'G' on, 16 or more.
  if (c >= 'a') return static_cast<uint32_t>(c - 'a' + 10);
  if (c >= 'A') return static_cast<uint32_t>(c - 'A' + 10);
  return 16;
}

// Reads one to `most` digits of the base from `c` on, up to the end of the number.
std::optional<uint32_t> readDigits(std::streambuf& text, int c, uint32_t base, int most) {
  uint32_t value = 0;
  int count = 0;
  for (uint32_t digit = digitOf(c); count < most && digit < base; digit = digitOf(c)) {
    value = value * base + digit;
    ++count;
    c = text.snextc();
  }
  const bool ends = c == Traits::eof() || isWhiteSpace(Traits::to_char_type(c));
  if (!ends || count == 0) return std::nullopt;
  return value;
}

std::optional<uint32_t> readNumber(std::streambuf& text) {
  const int first = text.sgetc();
  if (first != '0') return readDigits(text, first, 10, 9);
  const int second = text.snextc();
  if (second == 'x' || second == 'X') return readDigits(text, text.snextc(), 16, 8);
  if (second == Traits::eof() || isWhiteSpace(Traits::to_char_type(second))) return 0;
  return std::nullopt;
}

}  // namespace

std::optional<uint32_t> readPlainNumber(std::streambuf& text, uint32_t largest) {
  const std::streampos start = text.pubseekoff(0, std::ios_base::cur, std::ios_base::in);
  // There must be a way back.
  if (start == std::streampos(std::streamoff(-1))) return std::nullopt;
  const std::optional<uint32_t> number = readNumber(text);
  if (number.has_value() && *number <= largest) return number;
  text.pubseekpos(start, std::ios_base::in);
  return std::nullopt;
}
