// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// Makes `directory` the root of this process's file tree and its working directory, so that
// absolute paths and links are those of a target. Without the privilege to do so, a user namespace
// of the process's own gives it. Throws std::system_error when the kernel refuses both.
void enterTargetRoot(const std::string& directory);

// Is in a target's file tree as long as it lives, and back where the process was afterwards.
class TargetRoot {
 public:
  // An empty `directory` leaves the process where it is. Throws std::system_error as above.
  explicit TargetRoot(const std::string& directory);
  ~TargetRoot();
  TargetRoot(const TargetRoot&) = delete;
  TargetRoot& operator=(const TargetRoot&) = delete;

 private:
  int host_root_ = -1;
  int host_directory_ = -1;
};
