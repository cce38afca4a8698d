// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cctype>

#include "tools/lint/checks.h"
#include "tools/text/text.h"

namespace {

bool isControl(char c) {
  return std::iscntrl(static_cast<uint8_t>(c)) != 0 && c != '\t' && c != '\r';
}

// Bytes that are no UTF-8, or control characters: the first one is told of.
void checkBytes(const std::string& path, const std::string& content, Findings& findings) {
  size_t count = 0;
  Place first;
  const std::vector<std::string> lines = linesOf(content);
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    for (size_t at = 0; at < line.size();) {
      const size_t length = characterLength(line, at);
      const bool is_text = length > 0 && !isControl(line[at]);
      if (!is_text && count++ == 0) first = {path, i + 1, at + 1, line};
      at += std::max<size_t>(length, 1);
    }
  }
  if (count == 0) return;
  const char byte = first.source[first.column - 1];
  findings.add(
      {Rule::NotText, first,
       (isControl(byte) ? "the control character " : "the byte ") +
           hex(static_cast<uint8_t>(byte), 2) +
           (isControl(byte) ? " is no text: remove it" : " is not UTF-8: save the file as UTF-8") +
           (count == 1 ? ""
                       : StringPrintf("; the file has %zu more that are no text", count - 1))});
}

// Why the file has no lines that can be read; null when it has.
const char* whyNoLines(const std::string& content) {
  const bool has_mark = StartsWith(content, "\xFF\xFE") || StartsWith(content, "\xFE\xFF");
  // Every other byte is zero, but in characters of other scripts.
  const auto zeros = static_cast<size_t>(std::count(content.begin(), content.end(), '\0'));
  if (has_mark || (zeros > content.size() / 3 && (content[0] == '\0') != (content[1] == '\0')))
    return "the file is UTF-16: save it as UTF-8";
  const std::string text = content.substr(0, content.find_last_not_of("\r\n") + 1);
  return text.find('\n') == text.npos && text.find('\r') != text.npos
             ? "a carriage return alone ends no line: save the file with line feeds"
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
