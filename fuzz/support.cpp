// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sstream>

void require(bool kept, const char* promise) {
  if (kept) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

void requireSameLog(const Log& literal) {
  const Log log = takeLog();
  if (log == literal) return;
  std::cerr << "the library logs\n";
  for (const LogLine& line : log) std::cerr << "  " << line << "\n";
  std::cerr << "the literal reader logs\n";
  for (const LogLine& line : literal) std::cerr << "  " << line << "\n";
  require(false, "the log is that of the literal reader");
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
