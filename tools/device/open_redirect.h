// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/device/target_root.h"

// As long as it lives, files that this thread opens for reading are those of `root`, whether the
// program opens them or the shared library that it has loaded. This program defines the C library's
// open() for that. Opens for writing, those of other threads and those that the C library makes
// itself are not changed.
class OpenRedirect {
 public:
  // NoSpecialFiles: a pipe, a socket or a device cannot be opened. Reading one may never end.
  enum class Opens { AllFiles, NoSpecialFiles };

  explicit OpenRedirect(const TargetRoot& root, Opens opens = Opens::AllFiles);
  ~OpenRedirect();
  OpenRedirect(const OpenRedirect&) = delete;
  OpenRedirect& operator=(const OpenRedirect&) = delete;
};

// The names that the maps of that root add to the directory.
std::vector<std::string> mapsIn(const std::string& directory);
