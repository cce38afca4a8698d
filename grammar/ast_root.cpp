// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_root.h"

#include <android/log.h>
#include <zlib.h>

#include <algorithm>
#include <string_view>

#include "grammar/line_reader.h"
#include "grammar/text_stream.h"
#include "grammar/to_bytes.h"
#include "grammar/white_space.h"

namespace {

constexpr uint16_t kMagic = 0xDECA;

// True for two slashes with nothing but white space between them.
bool holdsDoubleSlash(std::string_view text) {
  for (size_t slash = text.find('/'); slash != text.npos; slash = text.find('/', slash + 1)) {
    const std::string_view rest = text.substr(slash + 1);
    const auto next = std::find_if_not(rest.begin(), rest.end(), isWhiteSpace);
    if (next != rest.end() && *next == '/') return true;
  }
  return false;
}

// True when a comment mark, "//", "#" or ";", stands in `text`, the part of a line before its first
// '='. White space does not part two slashes.
bool holdsCommentMark(std::string_view text) {
  return text.find('#') != text.npos || text.find(';') != text.npos || holdsDoubleSlash(text);
}

// Moves the characters of the line that are not white space together, and ends them with NUL.
// cppcheck-suppress[constParameter] It is the line's characters that change.
const char* withoutWhiteSpace(Line& line) {
  char* out = line.begin;
  for (const char c : line.text()) {
    if (!isWhiteSpace(c)) *out++ = c;
  }
  *out = '\0';
  return line.begin;
}

// Blanks around the mark stay, so a key after "[CCC] " starts with a blank and matches nothing.
void eraseCccMark(Line& line) {
  constexpr std::string_view kMark = "[CCC]";
  const std::string_view text = line.text();
  // Hardly a line holds a bracket, and one character is found faster than a text.
  if (text.find(kMark.front()) == text.npos) return;
  const size_t mark = text.find(kMark);
  if (mark == text.npos) return;
  char* const first = line.begin + mark;
  line.end = std::copy(first + kMark.size(), line.end, first);
}

}  // namespace

AstRoot::AstRoot(const std::string& name, std::optional<uint8_t> id, int depth,
                 const std::initializer_list<std::shared_ptr<AstNode>>& children, uint8_t tag)
    : AstPrefix(name, id, depth, children, tag) {
  beginWithAnything();
}

AstRoot::~AstRoot() = default;

bool AstRoot::parse(std::istream& input) {
  LineReader lines(input);
  TextStream assignment;
  for (Line line; lines.next(line);) {
    if (holdsCommentMark(line.key())) {
      __android_log_print(ANDROID_LOG_DEBUG, nullptr, "--------------Ignored: %s\n",
                          withoutWhiteSpace(line));
      continue;
    }
    eraseCccMark(line);
    assignment.setText(line.text());
    parseChildren(assignment);
  }
  return true;
}

std::string AstRoot::getClass() const {
  return "AstRoot";
}

size_t AstRoot::serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const {
  size_t count = serializeChildren(out, conversion);
  count += to_bytes<uint16_t>(kMagic, out, conversion);
  // Last: it covers everything above.
  const auto crc = static_cast<uint32_t>(crc32(0, out.data(), static_cast<uInt>(out.size())));
  count += to_bytes<uint32_t>(crc, out, conversion);
  __android_log_print(ANDROID_LOG_DEBUG, nullptr, "AstRoot::serialize() %s %s\n", name.c_str(),
                      std::to_string(count).c_str());
  return count;
}

bool AstRoot::validate(std::vector<std::string>& missing, std::vector<std::string> path) {
  return validateChildren(missing, path);
}
