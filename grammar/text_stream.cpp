// SPDX-License-Identifier: Apache-2.0
#include "grammar/text_stream.h"

std::istream& TextStream::over(std::string_view text) {
  buffer.setText(text);
  if (stream.exceptions() != std::ios_base::goodbit) stream.exceptions(std::ios_base::goodbit);
  if (!stream.good()) stream.clear();
  stream.flags(std::ios_base::skipws | std::ios_base::dec);
  stream.width(0);
  return stream;
}

void TextStream::Buffer::setText(std::string_view text) {
  // A get area is not written to, yet its type allows it.
  char* const first = const_cast<char*>(text.data());
  setg(first, first, first + text.size());
}

std::streambuf::pos_type TextStream::Buffer::seekoff(off_type offset, std::ios_base::seekdir from,
                                                     std::ios_base::openmode which) {
  const char* const origin = from == std::ios_base::beg   ? eback()
                             : from == std::ios_base::cur ? gptr()
                                                          : egptr();
  return seekpos(origin - eback() + offset, which);
}

std::streambuf::pos_type TextStream::Buffer::seekpos(pos_type position,
                                                     std::ios_base::openmode which) {
  const off_type offset = position;
  const bool inside = offset >= 0 && offset <= egptr() - eback();
  if (!inside || (which & std::ios_base::in) == 0) return pos_type(off_type(-1));
  setg(eback(), eback() + offset, egptr());
  return position;
}
