// SPDX-License-Identifier: Apache-2.0
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "tools/device/target_root.h"

int openInRoot(int root, const char* path, int flags, Leaving leaving) {
  open_how how{};
  how.flags = static_cast<unsigned>(flags);
  how.resolve = leaving == Leaving::Fails ? RESOLVE_BENEATH : RESOLVE_IN_ROOT;
  long file = 0;
  do {
    // EAGAIN: something was renamed or mounted while the kernel followed "..".
    file = syscall(SYS_openat2, root, path, &how, sizeof(how));
  } while (file < 0 && errno == EAGAIN);
  return static_cast<int>(file);
}
