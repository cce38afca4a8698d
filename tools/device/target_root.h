// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/device/descriptor.h"

// A target's file tree. Absolute paths, absolute links and links that climb stay inside it. Needs
// no privilege, and leaves the root and the working directory of the process as they are.
class TargetRoot {
 public:
  // Relative paths begin at `working_directory`, a path in the tree. An empty `directory` stands
  // for the host's own tree. Throws std::runtime_error, one line, when the tree cannot be used.
  explicit TargetRoot(const std::string& directory, const std::string& working_directory = "/");

  // As open(2) in the tree, for flags that create no file.
  int open(const std::string& path, int flags) const;

  // What the host calls the file that has this path in the tree.
  std::string hostPath(const std::string& path) const;

 private:
  const std::string name_;
  const Descriptor directory_;
  const std::string relative_to_;  // What relative paths are appended to.
};
