// SPDX-License-Identifier: Apache-2.0
// In fortified headers open is an inline function, which can have no other names.
#undef _FORTIFY_SOURCE
#include "tools/device/open_redirect.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdarg>

#include "tools/device/files.h"

namespace {

thread_local const TargetRoot* root_of_thread = nullptr;
thread_local bool opens_special_files = true;

bool createsFile(int flags) {
  return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

bool onlyReads(int flags) {
  return (flags & O_ACCMODE) == O_RDONLY && (flags & O_TRUNC) == 0 && !createsFile(flags);
}

int openInTree(const char* path, int flags) {
  // O_PATH, which statusOf uses, opens nothing yet.
  if (!opens_special_files && (flags & O_PATH) == 0) {
    const std::optional<struct stat> status = statusOf(path);
    if (status.has_value() && isSpecial(*status)) {
      errno = ENXIO;
      return -1;
    }
  }
  return root_of_thread->open(path, flags);
}

}  // namespace

OpenRedirect::OpenRedirect(const TargetRoot& root, Opens opens) {
  root_of_thread = &root;
  opens_special_files = opens == Opens::AllFiles;
}

OpenRedirect::~OpenRedirect() {
  root_of_thread = nullptr;
}

std::vector<std::string> mapsIn(const std::string& directory) {
  return root_of_thread == nullptr ? std::vector<std::string>() : root_of_thread->mapsIn(directory);
}

// The C library's headers declare open() in more than one way: inline, or under the name of
// open64(). The others are what programs call that are built for large files, and those that are
// built with the C library's checks.
extern "C" {
using OpenFunction = int(const char* path, int flags, ...);

__attribute__((visibility("default"))) OpenFunction redirected __asm__("open");

int redirected(const char* path, int flags, ...) {
  if (root_of_thread != nullptr && onlyReads(flags)) return openInTree(path, flags);
  mode_t mode = 0;
  if (createsFile(flags)) {
    va_list arguments;
    va_start(arguments, flags);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the line above has initialised it.
    mode = va_arg(arguments, mode_t);
    va_end(arguments);
  }
  return openat(AT_FDCWD, path, flags, mode);
}

#define SAME_AS_OPEN __attribute__((visibility("default"), alias("open")))
SAME_AS_OPEN OpenFunction redirected64 __asm__("open64");
SAME_AS_OPEN OpenFunction redirectedChecked __asm__("__open_2");
SAME_AS_OPEN OpenFunction redirectedChecked64 __asm__("__open64_2");
}
