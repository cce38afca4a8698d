// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cctype>

#include "tools/lint/checks.h"
#include "tools/text/text.h"

namespace {

// Where the line has bytes that are no UTF-8, or control characters.
std::vector<size_t> noTextIn(const std::string& line) {
  std::vector<size_t> places;
  for (size_t at = 0; at < line.size();) {
    const size_t length = characterLength(line, at);
    const bool is_blank = line[at] == '\t' || line[at] == '\r';
    const bool is_control = std::iscntrl(static_cast<uint8_t>(line[at])) != 0 && !is_blank;
    if (length == 0 || is_control) places.push_back(at);
    at += std::max<size_t>(length, 1);
  }
  return places;
}

std::string messageFor(uint8_t byte, size_t more) {
  const bool is_control = std::iscntrl(byte) != 0;
  return (is_control ? "the control character " : "the byte ") + hex(byte, 2) +
         (is_control ? " is no text: remove it" : " is not UTF-8: save the file as UTF-8") +
         (more == 0 ? "" : "; the file has " + std::to_string(more) + " more that are no text");
}

void checkBytes(const std::string& path, const std::string& content, Findings& findings) {
  size_t count = 0;
  Place first;
  const std::vector<std::string> lines = linesOf(content);
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::vector<size_t> places = noTextIn(lines[i]);
    if (count == 0 && !places.empty()) first = {path, i + 1, places.front() + 1, lines[i]};
    count += places.size();
  }
  if (count == 0) return;
  const auto byte = static_cast<uint8_t>(first.source[first.column - 1]);
  findings.add({Rule::NotText, first, messageFor(byte, count - 1)});
}

// Why the file has no lines that can be read; null when it has.
const char* whyNoLines(const std::string& content) {
  const bool has_mark = StartsWith(content, "\xFF\xFE") || StartsWith(content, "\xFE\xFF");
  if (has_mark || (content.size() > 1 && (content[0] == '\0') != (content[1] == '\0')))
    return "the file is UTF-16: save it as UTF-8";
  const bool is_one_line =
      content.find('\n') == content.npos && content.find('\r') < content.size() - 1;
  return is_one_line ? "a carriage return alone ends no line: save the file with line feeds"
                     : nullptr;
}

}  // namespace

bool hasByteOrderMark(const std::string& text) {
  return StartsWith(text, "\xEF\xBB\xBF");
}

bool checkText(const std::string& path, const std::string& content, const std::string& first_key,
               Findings& findings) {
  if (const char* const message = whyNoLines(content)) {
    findings.add({Rule::NotText, {path}, message, {kAnyKey}});
    return false;
  }
  if (hasByteOrderMark(content)) {
    findings.add(
        {Rule::ByteOrderMark,
         {path, 1, 1, linesOf(content).front()},
         "the file starts with a byte order mark, which is part of its first line: save it "
         "without the mark",
         {first_key}});
  }
  checkBytes(path, content, findings);
  return true;
}
