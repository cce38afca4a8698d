// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One way from the calibration files below the current directory to the controller's block. Each
// lies in a source file of its own and enters itself, so that a build may leave one out.
struct Contender {
  // Writes the block and returns its size, or 0 when there is none.
  using Load = uint32_t (*)(uint8_t* block);

  std::string name;
  Load load;
};

// All contenders of this program, in no order.
const std::vector<Contender>& contenders();

// To be defined beside a contender, at file scope: enters it.
struct Entry {
  Entry(const char* name, Contender::Load load);
};
