// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/process_state.h"

#include <filesystem>
#include <fstream>
#include <string>

size_t openDescriptors() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return static_cast<size_t>(std::distance(begin(descriptors), end(descriptors)));
}

size_t mappedRegions() {
  std::ifstream maps("/proc/self/maps");
  size_t count = 0;
  for (std::string line; std::getline(maps, line);) ++count;
  return count;
}
