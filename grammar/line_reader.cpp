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

// True for a comment that begins with its mark, as most do. A '=' follows.
bool beginsWithCommentMark(const char* line) {
  return line[0] == '#' || line[0] == ';' || (line[0] == '/' && line[1] == '/');
}

}  // namespace

bool LineReader::next(Line& line) {
  Place place;
  while (!input.good() || !findInArea(place)) {
    if (!readPartial(place)) return false;
    if (place.equal != place.end) break;
  }
  line = judge(place);
  return true;
}

bool LineReader::findInArea(Place& place) {
  std::streambuf& text = *input.rdbuf();
  const std::string_view area = GetArea::of(text);
  if (area.empty()) return false;
  place.limit = area.data() + area.size();
  place.equal = find('=', area.data(), place.limit);
  place.end = find('\n', place.equal, place.limit);
  place.begin = lineBegin(area.data(), place.equal);
  const bool whole = place.end != place.limit;
  GetArea::skip(text, static_cast<size_t>((whole ? place.end + 1 : place.begin) - area.data()));
  return whole;
}

bool LineReader::readPartial(Place& place) {
  // Reserved here, since std::getline() does not throw when memory is short: it ends the text. Most
  // such lines are the last one, with the rest of the area.
  if (input.good()) partial.reserve(GetArea::of(*input.rdbuf()).size());
  if (!std::getline(input, partial)) return false;
  marks = {};
  const char* const end = partial.data() + partial.size();
  place = {partial.data(), find('=', partial.data(), end), end, end};
  return true;
}

Line LineReader::judge(const Place& place) {
  const std::string_view text(place.begin, static_cast<size_t>(place.end - place.begin));
  if (beginsWithCommentMark(place.begin)) return {text, true, false};
  if (marks.nearest < place.begin || marks.limit != place.limit) searchMarks(place);
  if (marks.nearest >= place.end) return {text, false, false};
  const bool is_comment = marks.hash < place.equal || marks.semicolon < place.equal ||
                          (marks.slash < place.equal && holdsDoubleSlash(place.begin, place.equal));
  return {text, is_comment, marks.bracket < place.end};
}

void LineReader::searchMarks(const Place& place) {
  if (marks.limit != place.limit) marks = {};
  marks.limit = place.limit;
  const char* const begin = place.begin;
  if (marks.hash < begin) marks.hash = find('#', begin, marks.limit);
  if (marks.semicolon < begin) marks.semicolon = find(';', begin, marks.limit);
  if (marks.slash < begin) marks.slash = find('/', begin, marks.limit);
  if (marks.bracket < begin) marks.bracket = find('[', begin, marks.limit);
  marks.nearest = std::min({marks.hash, marks.semicolon, marks.slash, marks.bracket});
}
