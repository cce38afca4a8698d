// SPDX-License-Identifier: Apache-2.0
#include "tests/kit/temporary_tree.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace fs = std::filesystem;

TemporaryTree::TemporaryTree() : previous_(fs::current_path().string()) {
  root_ = (fs::temp_directory_path() / "uwb_params_test.XXXXXX").string();
  if (mkdtemp(root_.data()) == nullptr) throw std::runtime_error("cannot make " + root_);
  fs::current_path(root_);
}

TemporaryTree::~TemporaryTree() {
  std::error_code ignored;
  fs::current_path(previous_, ignored);
  fs::remove_all(root_, ignored);
}

void TemporaryTree::write(const std::string& path, const std::string& text) const {
  const fs::path target = fs::path(root_) / path;
  fs::create_directories(target.parent_path());
  std::ofstream file(target, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + target.string());
}

void TemporaryTree::makeDirectory(const std::string& path) const {
  fs::create_directories(fs::path(root_) / path);
}

void TemporaryTree::remove(const std::string& path) const {
  fs::remove_all(fs::path(root_) / path);
}
