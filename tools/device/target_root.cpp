// SPDX-License-Identifier: Apache-2.0
#include "tools/device/target_root.h"

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace {

bool changeRoot(const std::string& directory) {
  return chroot(directory.c_str()) == 0;
}

std::system_error lastError(const std::string& what) {
  return {errno, std::generic_category(), what};
}

int openDirectory(const char* path) {
  const int directory = open(path, O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (directory < 0) throw lastError(std::string("cannot open ") + path);
  return directory;
}

}  // namespace

void enterTargetRoot(const std::string& directory) {
  bool entered = changeRoot(directory);
  if (!entered && errno == EPERM) {
    entered = unshare(CLONE_NEWUSER) == 0 && changeRoot(directory);
    // Why there is no user namespace is of no help: the kernel does not let us.
    if (!entered) errno = EPERM;
  }
  if (!entered || chdir("/") != 0) throw lastError("cannot make " + directory + " the root");
}

TargetRoot::TargetRoot(const std::string& directory) {
  if (directory.empty()) return;
  host_root_ = openDirectory("/");
  host_directory_ = openDirectory(".");
  enterTargetRoot(directory);
}

TargetRoot::~TargetRoot() {
  if (host_root_ < 0) return;
  // Nothing may go on in the wrong tree.
  if (fchdir(host_root_) != 0 || chroot(".") != 0 || fchdir(host_directory_) != 0) std::abort();
  close(host_root_);
  close(host_directory_);
}
