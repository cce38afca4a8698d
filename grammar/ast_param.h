// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "grammar/ast_equal.h"

// One parameter, `name=value`, bound to the record field that receives its value. T is uint8_t,
// uint16_t, uint32_t or std::string.
template <typename T>
class AstParam : public AstNode {
 public:
  // `id` is the byte before the value in serialize; it plays no part in parsing. `target` is
  // borrowed and must outlive the node; a parameter without one is neither missing nor written.
  AstParam(std::string_view name, int depth, std::optional<uint8_t> id, T* target);

  bool parse(std::istream& input) override;
  std::string getClass() const override;
  void print(std::ostream& out) const override;
  size_t serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const override;
  // Numbers are byte-swapped for any conversion other than NoConversion, texts never.
  void toBuffer(EndiannessConversion conversion) override;
  bool validate(std::vector<std::string>& missing, std::vector<std::string> path) override;
  ~AstParam() override;  // Out of line, so that there is one copy.

 private:
  AstEqual<T> child;
  const std::optional<uint8_t> id;
  T* const target;
};

extern template class AstParam<uint8_t>;
extern template class AstParam<uint16_t>;
extern template class AstParam<uint32_t>;
extern template class AstParam<std::string>;
