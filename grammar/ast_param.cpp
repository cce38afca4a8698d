// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_param.h"

namespace {

void appendFullName(std::vector<std::string>& names, const std::vector<std::string>& groups,
                    const std::string& name) {
  std::string& full_name = names.emplace_back();
  for (const std::string& group : groups) full_name.append(group).append(1, '.');
  full_name += name;
}

}  // namespace

template <typename T>
AstParam<T>::AstParam(std::string_view name, int depth, std::optional<uint8_t> id, T* target)
    : AstNode(name, depth), child(0), id(id), target(target) {}

template <typename T>
AstParam<T>::~AstParam() = default;

template <typename T>
bool AstParam<T>::parse(std::istream& input) {
  return readName(input) && child.parse(input);
}

template <typename T>
std::string AstParam<T>::getClass() const {
  return "AstParam";
}

template <typename T>
void AstParam<T>::print(std::ostream& out) const {
  printName(out);
  child.print(out);
}

template <typename T>
size_t AstParam<T>::serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const {
  const size_t count = serializeId(id, out);
  return count + child.serialize(out, conversion);
}

template <typename T>
void AstParam<T>::toBuffer(EndiannessConversion conversion) {
  if (target != nullptr && child.value().has_value())
    *target = converted(*child.value(), conversion);
}

template <typename T>
bool AstParam<T>::validate(std::vector<std::string>& missing, std::vector<std::string> path) {
  if (target == nullptr || child.value().has_value()) return true;
  appendFullName(missing, path, name);
  return false;
}

template class AstParam<uint8_t>;
template class AstParam<uint16_t>;
template class AstParam<uint32_t>;
template class AstParam<std::string>;
