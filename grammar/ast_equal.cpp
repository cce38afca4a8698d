// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_equal.h"

template <typename T>
AstEqual<T>::AstEqual(int depth) : AstNode("=", depth), child("", 0) {}

template <typename T>
bool AstEqual<T>::parse(std::istream& input) {
  return readName(input) && child.parse(input);
}

template <typename T>
std::string AstEqual<T>::getClass() const {
  return "AstEqual";
}

template <typename T>
void AstEqual<T>::print(std::ostream& out) const {
  child.print(out);
}

template <typename T>
size_t AstEqual<T>::serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const {
  return child.serialize(out, conversion);
}

template class AstEqual<uint8_t>;
template class AstEqual<uint16_t>;
template class AstEqual<uint32_t>;
template class AstEqual<std::string>;
