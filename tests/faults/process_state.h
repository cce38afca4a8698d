// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

// What a process holds besides memory.

inline size_t openDescriptors() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return static_cast<size_t>(std::distance(begin(descriptors), end(descriptors)));
}

// The parts of the address space that are in use: libraries, heaps, stacks.
inline size_t mappedRegions() {
  std::ifstream maps("/proc/self/maps");
  size_t count = 0;
  for (std::string line; std::getline(maps, line);) ++count;
  return count;
}
