// SPDX-License-Identifier: Apache-2.0
#include "tools/probe/number_spelling.h"

#include <algorithm>

namespace {

constexpr char kSigns[] = "+-";

size_t countOf(const std::string& text, size_t at, const char* set) {
  return std::min(text.find_first_not_of(set, at), text.size()) - std::min(at, text.size());
}

// How many characters from `at` on are a number.
size_t numberLength(const std::string& text, size_t at) {
  if (text.compare(at, 2, "0x") == 0 || text.compare(at, 2, "0X") == 0) {
    const size_t digits = countOf(text, at + 2, "0123456789abcdefABCDEF");
    return digits == 0 ? 0 : 2 + digits;
  }
  return countOf(text, at, text.compare(at, 1, "0") == 0 ? "01234567" : "0123456789");
}

}  // namespace

NumberSpelling spellingOf(const std::string& text) {
  const size_t sign = countOf(text.substr(0, 1), 0, kSigns);
  const size_t gathered = countOf(text, sign, "0123456789abcdefABCDEFxX");
  const size_t number = numberLength(text, sign);
  return {text.substr(0, sign + gathered), number == 0 ? "" : text.substr(0, sign + number)};
}
