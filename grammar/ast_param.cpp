// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_param.h"

#include <ostream>

#include "grammar/ast_equal.h"

template <typename T>
AstParam<T>::AstParam(const std::string& name, int depth, std::optional<uint8_t> id, T* target)
    : AstNode(name, depth), child(std::make_shared<AstEqual<T>>(0)), id(id), target(target) {}

template <typename T>
AstParam<T>::~AstParam() = default;

template <typename T>
bool AstParam<T>::parse(std::istream& input) {
  return parseNameThen(*child, input);
}

template <typename T>
std::string AstParam<T>::getClass() const {
  return "AstParam";
}

template <typename T>
void AstParam<T>::print(std::ostream& out) const {
  printName(out);
  child->print(out);
}

template <typename T>
size_t AstParam<T>::serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const {
  size_t count = 0;
  if (id.has_value()) {
    ++count;
    out.push_back(*id);
  }
  return count + child->serialize(out, conversion);
}

template <typename T>
void AstParam<T>::toBuffer(EndiannessConversion conversion) {
  if (target != nullptr && value().has_value()) *target = converted(*value(), conversion);
}

template <typename T>
bool AstParam<T>::validate(std::vector<std::string>& missing, std::vector<std::string> path) {
  if (target == nullptr || value().has_value()) return true;
  std::string full_name;
  for (const std::string& group : path) full_name += group + ".";
  missing.push_back(full_name + name);
  return false;
}

template <typename T>
const std::optional<T>& AstParam<T>::value() const {
  // The constructor has put nothing else there.
  return static_cast<const AstEqual<T>&>(*child).value();
}

template class AstParam<uint8_t>;
template class AstParam<uint16_t>;
template class AstParam<uint32_t>;
template class AstParam<std::string>;
