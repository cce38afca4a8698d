// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <sstream>

#include "tests/kit/doubles.h"

namespace {

// An error is one line of the log and one exception. They do not read the same.
void requireKnownError(const std::string& thrown, const std::vector<LogLine>& log) {
  require(!log.empty(), "an error is logged before it is thrown");
  const bool number = thrown == "Expected value" && log.back() == error("Expected Value");
  const bool value = thrown == "Unexpected value" && log.back() == error("Unexpected_value\n");
  require(number || value, "an error is one of two, in the log and thrown");
}

bool isError(const LogLine& line) {
  return line.priority == 6;
}

}  // namespace

void require(bool kept, const char* promise) {
  if (kept) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> pieces;
  std::istringstream input(text);
  for (std::string piece; std::getline(input, piece, separator);) pieces.push_back(piece);
  return pieces;
}

InputBytes::InputBytes(const uint8_t* data, size_t size) : bytes(data, data + size) {}

uint8_t InputBytes::byte() {
  return position < bytes.size() ? static_cast<uint8_t>(bytes[position++]) : 0;
}

std::string InputBytes::text(size_t size) {
  const std::string taken = bytes.substr(std::min(position, bytes.size()), size);
  position += taken.size();
  return taken;
}

std::string InputBytes::rest() {
  return text(std::string::npos);
}

bool parse(AstRoot& tree, const std::string& text) {
  takeLog();
  try {
    std::istringstream input(text);
    require(tree.parse(input), "a text that is read to its end is accepted");
  } catch (const std::exception& e) {
    requireKnownError(e.what(), takeLog());
    return false;
  }
  const std::vector<LogLine> log = takeLog();
  require(std::none_of(log.begin(), log.end(), isError), "no error is logged and then forgotten");
  return true;
}

std::string printed(const AstRoot& tree) {
  std::ostringstream out;
  tree.print(out);
  return out.str();
}
