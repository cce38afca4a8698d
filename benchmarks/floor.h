// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// What any load must do at least: the system calls that open, read and close the files of a load,
// and those that fail to open what is missing before them.
class Floor {
 public:
  // Looks up which files a load below the current directory opens.
  Floor();

  // Opens, reads to the end and closes each of them. Returns the count of bytes.
  size_t readAll();

 private:
  std::vector<std::string> paths;
  std::vector<char> buffer;
};
