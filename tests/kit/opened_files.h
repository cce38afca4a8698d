// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

// Watches a file, or the files that a directory itself holds, for being opened.
class OpenedFiles {
 public:
  explicit OpenedFiles(const std::string& path) : watch_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (inotify_add_watch(watch_, path.c_str(), IN_OPEN) < 0) {
      throw std::runtime_error("cannot watch " + path);
    }
  }
  ~OpenedFiles() { close(watch_); }
  OpenedFiles(const OpenedFiles&) = delete;
  OpenedFiles& operator=(const OpenedFiles&) = delete;

  // True when any was opened since the last call.
  bool any() const {
    alignas(inotify_event) char event[4096];
    bool opened = false;
    while (read(watch_, event, sizeof(event)) > 0) opened = true;
    return opened;
  }

 private:
  const int watch_;
};
