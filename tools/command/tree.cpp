// SPDX-License-Identifier: Apache-2.0
#include "tools/command/tree.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "tools/device/device_library.h"
#include "tools/device/files.h"

Tree::Tree(const std::string& root, const Options& options, OpenRedirect::Opens opens)
    : root_(root), redirect_(root_, opens) {
  setDeviceProperties(options.country.value_or(""), options.path_file);
  if (options.path_file.empty() || canBeOpened(options.path_file)) return;
  throw std::runtime_error("cannot open the path file " + options.path_file +
                           (root.empty() ? "" : " in the tree " + root) + ": " +
                           std::strerror(errno));
}
