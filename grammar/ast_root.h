// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "grammar/ast_prefix.h"
#include "grammar/text_stream.h"

// The root of a schema tree: reads a whole calibration text, line by line.
class AstRoot : public AstPrefix {
 public:
  // The root's own name, id and tag match nothing and are not serialized; print shows name and id.
  AstRoot(std::string_view name, std::optional<uint8_t> id, int depth,
          const std::initializer_list<std::shared_ptr<AstNode>>& children, uint8_t tag);

  // Reads the stream to its end and returns true. Comments, lines without '=' and lines that no
  // child takes are ignored. An exception ends the reading; the lines before it keep their effect.
  bool parse(std::istream& input) override;
  std::string getClass() const override;

  // The children's bytes, the magic number 0xDECA (2 bytes), then the CRC-32 (4 bytes) of
  // everything that `out` holds by then, also of what it held before the call.
  size_t serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const override;

  // The root's name is not part of the names of missing parameters.
  bool validate(std::vector<std::string>& missing, std::vector<std::string> path) override;

 private:
  // What the children read a line from.
  TextStream assignment;
};
