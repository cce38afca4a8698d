// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_root.h"

#include <android/log.h>
#include <zlib.h>

#include <algorithm>
#include <sstream>
#include <string_view>

#include "grammar/to_bytes.h"

namespace {

constexpr uint16_t kMagic = 0xDECA;

// White space is the blank and the control characters from tab to carriage return, in any locale.
bool isWhiteSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string withoutWhiteSpace(std::string line) {
  line.erase(std::remove_if(line.begin(), line.end(), isWhiteSpace), line.end());
  return line;
}

bool isComment(std::string_view compact, size_t equal) {
  const std::string_view key = compact.substr(0, equal);
  return key.find("//") != key.npos || key.find('#') != key.npos || key.find(';') != key.npos;
}

// True when the line holds an assignment. A comment that holds one is logged.
bool isAssignment(const std::string& line) {
  const std::string compact = withoutWhiteSpace(line);
  const size_t equal = compact.find('=');
  if (equal == compact.npos) return false;
  if (!isComment(compact, equal)) return true;
  __android_log_print(ANDROID_LOG_DEBUG, nullptr, "--------------Ignored: %s\n", compact.c_str());
  return false;
}

// Blanks around the mark stay, so a key after "[CCC] " starts with a blank and matches nothing.
void eraseCccMark(std::string& line) {
  constexpr std::string_view kMark = "[CCC]";
  const size_t mark = line.find(kMark);
  if (mark != line.npos) line.erase(mark, kMark.size());
}

}  // namespace

AstRoot::~AstRoot() = default;

bool AstRoot::parse(std::istream& input) {
  for (std::string line; std::getline(input, line);) {
    if (!isAssignment(line)) continue;
    eraseCccMark(line);
    std::stringstream assignment(line);
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
