// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <memory>
#include <optional>

#include "grammar/ast_node.h"

// A named group: `name.` in a key, or `name7.` when the group has an id.
class AstPrefix : public AstNode {
 public:
  // `children` are tried, checked, printed and serialized in the given order. `tag` and `id` are
  // the bytes written before them by serialize. A group with an id is written with a number in the
  // text.
  AstPrefix(std::string_view name, std::optional<uint8_t> id, int depth,
            const std::initializer_list<std::shared_ptr<AstNode>>& children, uint8_t tag);

  bool parse(std::istream& input) override;
  std::string getClass() const override;
  void print(std::ostream& out) const override;
  size_t serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const override;
  void toBuffer(EndiannessConversion conversion) override;
  bool validate(std::vector<std::string>& missing, std::vector<std::string> path) override;

 protected:
  // Lets each child in turn read from the stream's position; true as soon as one takes it. When
  // none does, the stream stands where it stood.
  bool parseChildren(std::istream& input);
  size_t serializeChildren(std::vector<uint8_t>& out, EndiannessConversion conversion) const;
  // Asks every child, also after one that lacks something.
  bool validateChildren(std::vector<std::string>& missing, std::vector<std::string> path);

 private:
  const uint8_t tag;
  const std::optional<uint8_t> id;
  const std::vector<std::shared_ptr<AstNode>> children;
};
