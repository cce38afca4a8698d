// SPDX-License-Identifier: Apache-2.0
#include "tools/device/files.h"

#include <dirent.h>
#include <fcntl.h>

#include <memory>

#include "tools/device/descriptor.h"

std::optional<struct stat> statusOf(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_PATH | O_CLOEXEC));
  struct stat status {};
  if (!file.isOpen() || fstat(file.number(), &status) != 0) return std::nullopt;
  return status;
}

bool canBeOpened(const std::string& path) {
  return Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC)).isOpen();
}

std::vector<std::string> namesIn(const std::string& directory) {
  std::vector<std::string> names;
  const int file = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(file < 0 ? nullptr : fdopendir(file), closedir);
  if (stream == nullptr) return names;
  while (const dirent* const entry = readdir(stream.get())) names.emplace_back(entry->d_name);
  return names;
}
