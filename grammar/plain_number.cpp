// SPDX-License-Identifier: Apache-2.0
#include "grammar/plain_number.h"

#include <charconv>

#include "grammar/get_area.h"
#include "grammar/white_space.h"

namespace {

// The number at the beginning of `area`, and the count of its characters; 0 for one that is not in
// a plain spelling. What follows it is not looked at.
size_t parsePlain(std::string_view area, uint32_t& number) {
  const bool zero = !area.empty() && area[0] == '0';
  const bool hexadecimal = zero && area.size() > 1 && (area[1] == 'x' || area[1] == 'X');
  const char* const digits = area.data() + (hexadecimal ? 2 : 0);
  const auto [end, error] =
      std::from_chars(digits, area.data() + area.size(), number, hexadecimal ? 16 : 10);
  const ptrdiff_t count = end - digits;
  // Longer numbers may not fit, and a 0 before other digits means octal.
  const ptrdiff_t most = hexadecimal ? 8 : zero ? 1 : 9;
  if (error != std::errc() || count > most) return 0;
  return static_cast<size_t>(end - area.data());
}

// True at the end of the text and before white space.
bool endsHere(std::streambuf& text) {
  using Traits = std::streambuf::traits_type;
  const Traits::int_type next = text.sgetc();
  return next == Traits::eof() || isWhiteSpace(Traits::to_char_type(next));
}

}  // namespace

std::optional<uint32_t> readPlainNumber(std::istream& input, uint32_t largest) {
  if (!input.good()) return std::nullopt;
  std::streambuf& text = *input.rdbuf();
  uint32_t number = 0;
  const size_t count = parsePlain(GetArea::of(text), number);
  if (count == 0 || number > largest) return std::nullopt;
  const std::streampos start = text.pubseekoff(0, std::ios_base::cur, std::ios_base::in);
  // Without a position there is no way back.
  if (start == std::streampos(std::streamoff(-1))) return std::nullopt;
  GetArea::skip(text, count);
  if (endsHere(text)) return number;
  const std::streamoff back = text.pubseekpos(start, std::ios_base::in);
  if (back < 0) input.setstate(std::ios_base::failbit);
  return std::nullopt;
}
