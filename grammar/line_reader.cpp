// SPDX-License-Identifier: Apache-2.0
#include "grammar/line_reader.h"

// For memrchr, which the C libraries of the device and of the hosts have beside the standard.
#include <string.h>

#include <algorithm>

#include "grammar/get_area.h"
#include "grammar/white_space.h"

namespace {

// The first `wanted` from `begin` on, or `limit`.
const char* find(char wanted, const char* begin, const char* limit) {
  const void* const found = memchr(begin, wanted, static_cast<size_t>(limit - begin));
  return found == nullptr ? limit : static_cast<const char*>(found);
}

// The beginning of the line that goes on at `place`, in a text that begins at `begin`.
const char* lineBegin(const char* begin, const char* place) {
  const void* const newline = memrchr(begin, '\n', static_cast<size_t>(place - begin));
  return newline == nullptr ? begin : static_cast<const char*>(newline) + 1;
}

// True for two slashes with nothing but white space between them.
bool holdsDoubleSlash(const char* begin, const char* end) {
  for (const char* slash = find('/', begin, end); slash != end;) {
    const char* const next = std::find_if_not(slash + 1, end, isWhiteSpace);
    if (next != end && *next == '/') return true;
    slash = find('/', next, end);
  }
  return false;
}

// True when a comment mark, "//", "#" or ";", stands in the part of a line before its first '='.
bool holdsCommentMark(const char* begin, const char* equal) {
  return find('#', begin, equal) != equal || find(';', begin, equal) != equal ||
         holdsDoubleSlash(begin, equal);
}

// The same for a comment that begins with its mark, as most do. A '=' follows.
bool beginsWithCommentMark(const char* line) {
  return line[0] == '#' || line[0] == ';' || (line[0] == '/' && line[1] == '/');
}

}  // namespace

LineReader::LineReader(std::istream& input) : input(input) {}

bool LineReader::next(Line& line) {
  while (!input.good() || !findInArea(line)) {
    if (!readPartial()) return false;
    const size_t equal = partial.find('=');
    if (equal == partial.npos) continue;
    line = {partial, holdsCommentMark(partial.data(), &partial[equal]), true};
    return true;
  }
  return true;
}

bool LineReader::readPartial() {
  // Where the area ends the text, the line takes no more. std::getline() would not throw for want
  // of memory: it would end the text.
  if (input.good()) partial.reserve(GetArea::of(*input.rdbuf()).size());
  if (!std::getline(input, partial)) return false;
  // The area is another one now.
  nearest = nullptr;
  for (Mark& mark : marks) mark.place = nullptr;
  return true;
}

bool LineReader::findInArea(Line& line) {
  std::streambuf& text = *input.rdbuf();
  const std::string_view area = GetArea::of(text);
  if (area.empty()) return false;
  const char* const limit = area.data() + area.size();
  const char* const equal = find('=', area.data(), limit);
  const char* const end = find('\n', equal, limit);
  const char* const begin = lineBegin(area.data(), equal);
  const bool whole = end != limit;
  GetArea::skip(text, static_cast<size_t>((whole ? end + 1 : begin) - area.data()));
  if (!whole) return false;
  line.text = {begin, static_cast<size_t>(end - begin)};
  line.is_comment = beginsWithCommentMark(begin);
  if (line.is_comment) return true;
  line.may_hold_ccc = holdsMark(begin, end, limit);
  line.is_comment = line.may_hold_ccc && holdsCommentMark(begin, equal);
  return true;
}

bool LineReader::holdsMark(const char* begin, const char* end, const char* limit) {
  if (nearest < begin) {
    nearest = limit;
    for (Mark& mark : marks) {
      if (mark.place < begin) mark.place = find(mark.character, begin, limit);
      nearest = std::min(nearest, mark.place);
    }
  }
  return nearest < end;
}
