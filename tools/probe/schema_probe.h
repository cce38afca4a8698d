// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "grammar/ast_root.h"
#include "schema/antenna_selection.h"

// What one line does to a schema's tree.
struct LineEffect {
  enum class Kind {
    Dropped,  // No parameter has its key.
    Comment,  // The tree logs it as ignored.
    Sets,     // It sets `parameter`.
    Fails,    // It names `parameter`, but the device stops reading the file at its value.
  };
  Kind kind = Kind::Dropped;
  size_t parameter = 0;  // The index in SchemaProbe::keys.
  std::string value;     // As the tree prints it.

  bool namesParameter() const { return kind == Kind::Sets || kind == Kind::Fails; }
};

// Asks a schema's tree what a line does. A tree without values reports all its parameters as
// missing; after a line, the one that is no longer reported is the one that the line set. So the
// keys and the text language are the library's.
class SchemaProbe {
 public:
  using MakeTree = std::function<std::unique_ptr<AstRoot>()>;
  explicit SchemaProbe(MakeTree make_tree);

  // The keys of all parameters, in the tree's order.
  const std::vector<std::string>& keys() const& { return keys_; }
  const std::vector<std::string>& keys() const&& = delete;

  LineEffect feed(const std::string& line) const;

 private:
  // The parameter that the line names, whose value cannot be read.
  size_t parameterNamedIn(const std::string& line) const;
  std::optional<size_t> parameterSetIn(AstRoot& tree) const;
  std::string valueIn(const AstRoot& tree) const;

  const MakeTree make_tree_;
  std::vector<std::string> keys_;
  std::vector<std::string> print_;  // The lines of a tree without values.
  mutable std::unique_ptr<AstRoot> fresh_;
};

// The probe of the two keys that name the antennas.
SchemaProbe selectionProbe();

// The probe of the full calibration for these antennas.
SchemaProbe calibrationProbe(const antenna_selection& selection);
