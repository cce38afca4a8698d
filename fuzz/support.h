// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/kit/doubles.h"

// What the fuzz targets share.

// Names the promise that the library has broken, and aborts.
void require(bool kept, const char* promise);

// The library's log since the last call must be the literal reader's.
void requireSameLog(const Log& literal);

// The pieces of `text` between the separators. A separator at the end adds no empty piece.
std::vector<std::string> split(const std::string& text, char separator);

// The text of the exception that `step` throws; empty when it throws none.
template <typename Step>
std::string thrownBy(const Step& step) {
  try {
    step();
    return "";
  } catch (const std::invalid_argument& e) {
    return e.what();
  }
}

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
