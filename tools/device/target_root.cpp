// SPDX-License-Identifier: Apache-2.0
#include "tools/device/target_root.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "tools/device/open_in_root.h"

namespace {

constexpr int kDirectory = O_PATH | O_DIRECTORY | O_CLOEXEC;
constexpr int kNone = -1;

// A kernel without the call answers ENOSYS, a container that forbids it EPERM.
bool isRefused(int reason) {
  return reason == ENOSYS || reason == EPERM;
}

void require(int file, const std::string& directory) {
  if (file >= 0) return;
  const int reason = errno;
  throw std::runtime_error("cannot make " + directory + " the root: " +
                           (isRefused(reason) ? "the system call openat2 is refused: " : "") +
                           std::strerror(reason));
}

}  // namespace

TargetRoot::TargetRoot(const std::string& directory, const std::string& working_directory)
    : name_(directory),
      directory_(directory.empty() ? kNone : openat(AT_FDCWD, directory.c_str(), kDirectory)),
      relative_to_(working_directory == "/" ? "" : working_directory + "/") {
  if (directory.empty()) return;
  require(directory_.number(), directory);
  const Descriptor start(open(working_directory, kDirectory));
  require(start.number(), directory);
}

std::string TargetRoot::hostPath(const std::string& path) const {
  if (name_.empty()) return path;
  return name_.substr(0, name_.find_last_not_of('/') + 1) + "/" +
         path.substr(std::min(path.find_first_not_of("./"), path.size()));
}

int TargetRoot::open(const std::string& path, int flags) const {
  if (!directory_.isOpen()) return openat(AT_FDCWD, path.c_str(), flags);
  const bool is_relative = !path.empty() && path[0] != '/';
  const std::string from_root = is_relative ? relative_to_ + path : path;
  return openInRoot(directory_.number(), from_root.c_str(), flags);
}
