// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <unistd.h>

// The part of the platform's owner of a file descriptor that this project uses.
namespace android::base {

class unique_fd {
 public:
  explicit unique_fd(int fd) : fd(fd) {}
  ~unique_fd() {
    if (ok()) close(fd);
  }
  unique_fd(const unique_fd&) = delete;
  unique_fd& operator=(const unique_fd&) = delete;

  operator int() const { return fd; }  // NOLINT(google-explicit-constructor): as the platform's.
  bool ok() const { return fd >= 0; }

 private:
  const int fd;
};

}  // namespace android::base
