// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// A file tree of its own for one test, and the working directory while the test runs. Removed, and
// the working directory restored, at the end.
class TemporaryTree {
 public:
  TemporaryTree();
  ~TemporaryTree();
  TemporaryTree(const TemporaryTree&) = delete;
  TemporaryTree& operator=(const TemporaryTree&) = delete;

  // Writes a file below the tree, making its directories. `path` is relative.
  void write(const std::string& path, const std::string& text) const;
  void makeDirectory(const std::string& path) const;
  void remove(const std::string& path) const;

  // The absolute path of the tree, without a trailing slash.
  const std::string& root() const { return root_; }

 private:
  std::string root_;
  std::string previous_;
};
