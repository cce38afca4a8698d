// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_root.h"

#include <android/log.h>
#include <zlib.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "grammar/line_reader.h"
#include "grammar/to_bytes.h"
#include "grammar/white_space.h"

namespace {

constexpr uint16_t kMagic = 0xDECA;

// Logs the line without its white space. `copy` is where it is put together.
void logIgnored(std::string_view line, std::string& copy) {
  if (copy.size() <= line.size()) copy.resize(line.size() + 1);
  *std::remove_copy_if(line.begin(), line.end(), copy.begin(), isWhiteSpace) = '\0';
  __android_log_print(ANDROID_LOG_DEBUG, nullptr, "--------------Ignored: %s\n", copy.c_str());
}

// Blanks around the mark stay, so a key after "[CCC] " starts with a blank and matches nothing.
std::string_view withoutCccMark(const Line& line, std::string& copy) {
  constexpr std::string_view kMark = "[CCC]";
  const size_t mark = line.has_bracket ? line.text.find(kMark) : line.text.npos;
  if (mark == line.text.npos) return line.text;
  copy = line.text;
  return copy.erase(mark, kMark.size());
}

}  // namespace

AstRoot::AstRoot(std::string_view name, std::optional<uint8_t> id, int depth,
                 const std::initializer_list<std::shared_ptr<AstNode>>& children, uint8_t tag)
    : AstPrefix(name, id, depth, children, tag) {}

bool AstRoot::parse(std::istream& input) {
  LineReader lines(input);
  std::string copy;  // Of a line that is not read as it stands.
  for (Line line; lines.next(line);) {
    if (line.is_comment) {
      logIgnored(line.text, copy);
    } else {
      parseChildren(assignment.over(withoutCccMark(line, copy)));
    }
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
  return validateChildren(missing, std::move(path));
}
