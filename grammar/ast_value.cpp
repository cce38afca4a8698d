// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_value.h"

#include <android/log.h>

#include <istream>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <utility>

#include "grammar/extract_byte.h"
#include "grammar/plain_number.h"
#include "grammar/to_bytes.h"

namespace {

// Plain spellings are read directly, for speed. All others are read, or refused, by the stream.
template <typename T>
void extract(std::istream& input, T& value) {
  const auto plain = readPlainNumber(input, std::numeric_limits<T>::max());
  if (plain.has_value()) {
    value = static_cast<T>(*plain);
  } else if constexpr (sizeof(T) == 1) {
    extractByte(input, value);
  } else {
    input >> value;
  }
}

void extract(std::istream& input, std::string& word) {
  input >> word;
}

[[noreturn]] void refuseValue() {
  __android_log_print(ANDROID_LOG_ERROR, nullptr, "Unexpected_value\n");
  throw std::invalid_argument("Unexpected value");
}

// 32 bits wide: a stream prints an 8-bit number as a character.
void printValue(std::ostream& out, uint32_t number) {
  out << std::dec << number << " (0x" << std::hex << number << ")";
}

void printValue(std::ostream& out, const std::string& text) {
  out << text;
}

}  // namespace

template <typename T>
AstValue<T>::AstValue(std::string_view name, int depth) : AstNode(name, depth) {}

template <typename T>
bool AstValue<T>::parse(std::istream& input) {
  // With no base set, the prefix of the number decides.
  input.unsetf(std::ios_base::basefield);
  T read{};
  extract(input, read);
  if (input.fail()) refuseValue();
  value = std::move(read);
  return true;
}

template <typename T>
std::string AstValue<T>::getClass() const {
  return "AstValue";
}

template <typename T>
void AstValue<T>::print(std::ostream& out) const {
  out << " = ";
  if (value.has_value()) {
    printValue(out, *value);
  } else {
    out << "<undefined>";
  }
}

template <typename T>
size_t AstValue<T>::serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const {
  return value.has_value() ? to_bytes<T>(*value, out, conversion) : 0;
}

template class AstValue<uint8_t>;
template class AstValue<uint16_t>;
template class AstValue<uint32_t>;
template class AstValue<std::string>;
