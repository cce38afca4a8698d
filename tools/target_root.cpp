// SPDX-License-Identifier: Apache-2.0
#include "tools/target_root.h"

#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace {

bool changeRoot(const std::string& directory) {
  return chroot(directory.c_str()) == 0;
}

}  // namespace

void enterTargetRoot(const std::string& directory) {
  bool entered = changeRoot(directory);
  if (!entered && errno == EPERM && unshare(CLONE_NEWUSER) == 0) entered = changeRoot(directory);
  if (!entered || chdir("/") != 0) {
    throw std::system_error(errno, std::generic_category(),
                            "cannot make " + directory + " the root");
  }
}
