// SPDX-License-Identifier: Apache-2.0
#include "tools/text/text.h"

#include <algorithm>
#include <sstream>

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

}  // namespace

size_t characterLength(const std::string& text, size_t at) {
  const auto first = static_cast<uint8_t>(text[at]);
  const size_t length = sequenceLength(first);
  // The zero after the text's end continues no character.
  for (size_t i = 1; i < length; ++i) {
    if (!isContinuation(text[at + i])) return 0;
  }
  if (length > 2 && isForbidden(first, static_cast<uint8_t>(text[at + 1]))) return 0;
  return length;
}

std::string hex(uint32_t number, int digits) {
  return StringPrintf("0x%0*X", digits, number);
}

std::string hexByte(uint8_t byte) {
  return StringPrintf("%02x", byte);
}

std::string padded(const std::string& text, size_t width) {
  const size_t wide = widthOf(text);
  return wide >= width ? text : text + std::string(width - wide, ' ');
}

std::string printable(const std::string& text) {
  std::string out;
  for (size_t at = 0; at < text.size();) {
    const size_t length = characterLength(text, at);
    const auto byte = static_cast<uint8_t>(text[at]);
    // U+0080 to U+009F are control characters too, and U+00A0 looks like a blank.
    const bool is_control =
        byte < 0x20 || byte == 0x7F || (byte == 0xC2 && static_cast<uint8_t>(text[at + 1]) <= 0xA0);
    const bool is_mark = text.compare(at, 3, "\xEF\xBB\xBF") == 0;  // Of the byte order: unseen.
    const bool escapes = length == 0 || is_control || is_mark;
    out += byte == '\t' ? " " : escapes ? "\\x" + hexByte(byte) : text.substr(at, length);
    at += escapes ? 1 : length;
  }
  return out;
}

size_t widthOf(const std::string& printable_text) {
  const auto begin = printable_text.begin();
  return printable_text.size() -
         static_cast<size_t>(std::count_if(begin, printable_text.end(), isContinuation));
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream input(text);
  for (std::string line; std::getline(input, line);) lines.push_back(line);
  return lines;
}

std::string wrapped(const std::vector<std::string>& parts, size_t indent, size_t width) {
  std::string out;
  size_t column = indent;
  for (const std::string& part : parts) {
    const size_t wide = widthOf(part) + 1;  // With the comma.
    const bool fits = out.empty() || column + 1 + wide <= width;
    if (!out.empty()) out += fits ? ", " : ",\n" + std::string(indent, ' ');
    column = (fits && !out.empty() ? column + 1 : indent) + wide;
    out += part;
  }
  return out;
}

std::vector<std::string> wordsIn(const std::string& list) {
  std::vector<std::string> words;
  for (const std::string& part : Split(list, ",")) {
    words.push_back(android::base::Trim(part));
    if (words.back().empty()) words.pop_back();
  }
  return words;
}

std::string counted(size_t count, const std::string& thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

size_t editDistance(const std::string& a, const std::string& b, size_t limit) {
  if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) > limit) return limit + 1;
  std::vector<size_t> row(b.size() + 1);
  for (size_t j = 0; j < row.size(); ++j) row[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i;
    for (size_t j = 1; j < row.size(); ++j) {
      const size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
    if (*std::min_element(row.begin(), row.end()) > limit) break;
  }
  return row.back();
}

std::string nearestOf(const std::string& word, const std::vector<std::string>& candidates) {
  // Up to two characters may differ, in a long word a quarter of it, but at most six.
  size_t best = std::max<size_t>(2, std::min<size_t>(word.size() / 4, 6)) + 1;
  std::string nearest;
  for (const std::string& candidate : candidates) {
    const size_t d = editDistance(word, candidate, best);
    if (d >= best) continue;
    best = d;
    nearest = candidate;
  }
  return nearest;
}

std::string suggestion(const std::string& word, const std::vector<std::string>& candidates,
                       const std::string& otherwise) {
  const std::string nearest = nearestOf(word, candidates);
  return nearest.empty() ? otherwise : "; did you mean '" + nearest + "'?";
}

std::string Paint::with(const std::string& code, const std::string& text) const {
  return in_colour_ ? "\x1b[" + code + "m" + text + "\x1b[0m" : text;
}
