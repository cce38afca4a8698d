// SPDX-License-Identifier: Apache-2.0
#include "tools/device/files.h"

#include <android-base/unique_fd.h>
#include <dirent.h>
#include <fcntl.h>

#include <cerrno>
#include <climits>
#include <memory>

#include "tools/device/open_redirect.h"

using android::base::unique_fd;

namespace {

int openDirectory(const std::string& directory) {
  const char* const path = directory.empty() ? "." : directory.c_str();
  return open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

}  // namespace

std::optional<struct stat> statusOf(const std::string& path) {
  const unique_fd file(open(path.c_str(), O_PATH | O_CLOEXEC));
  if (!file.ok()) return std::nullopt;
  struct stat status {};
  fstat(file, &status);
  return status;
}

bool isSpecial(const struct stat& status) {
  return !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

std::string linkAt(const std::string& path) {
  const unique_fd link(open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  char target[PATH_MAX];
  const ssize_t length = readlinkat(link, "", target, sizeof(target));
  return length < 0 ? std::string() : std::string(target, static_cast<size_t>(length));
}

bool canBeOpened(const std::string& path) {
  return unique_fd(open(path.c_str(), O_RDONLY | O_CLOEXEC)).ok();
}

bool hidesNames(const std::string& directory) {
  return !unique_fd(openDirectory(directory)).ok() && errno == EACCES;
}

std::vector<std::string> namesIn(const std::string& directory) {
  std::vector<std::string> names = mapsIn(directory);
  const int file = openDirectory(directory);
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(file < 0 ? nullptr : fdopendir(file), closedir);
  if (stream == nullptr) return names;
  while (const dirent* const entry = readdir(stream.get())) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  return names;
}
