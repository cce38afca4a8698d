// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "grammar/ast_root.h"

// What the fuzz targets share.

// Names the promise that the library has broken, and aborts.
void require(bool kept, const char* promise);

// The pieces of `text` between the separators. A separator at the end adds no empty piece.
std::vector<std::string> split(const std::string& text, char separator);

// Takes an input apart, from the front. Once it is used up it yields zeros.
class InputBytes {
 public:
  InputBytes(const uint8_t* data, size_t size);

  uint8_t byte();
  std::string text(size_t size);
  std::string rest();

 private:
  std::string bytes;
  size_t position = 0;
};

// Parses the text as the loader does: what was set before an error stays. True when the text was
// read to its end. Requires that nothing but the grammar's two errors leaves the tree, each after
// its line in the log. Discards the log.
bool parse(AstRoot& tree, const std::string& text);

std::string printed(const AstRoot& tree);
