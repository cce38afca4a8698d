// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <deque>
#include <sstream>
#include <string>
#include <vector>

#include "tools/device/target_root.h"

// Takes the place of the kernel's openat2 where an emulator of a processor lacks it: follows links
// by itself.

namespace {

using Parts = std::deque<std::string>;

Parts partsOf(const std::string& path) {
  Parts parts;
  std::istringstream input(path);
  for (std::string part; std::getline(input, part, '/');) parts.push_back(part);
  // What ends in a slash must be a directory, as what ends in a dot.
  if (!path.empty() && path.back() == '/') parts.emplace_back(".");
  return parts;
}

std::string joined(const std::vector<std::string>& names) {
  std::string path = ".";
  for (const std::string& name : names) path += "/" + name;
  return path;
}

// The path that the link leads to; empty for what is no link.
std::string linkAt(int root, const std::string& path) {
  char target[PATH_MAX];
  const ssize_t length = readlinkat(root, path.c_str(), target, sizeof(target));
  return length < 0 ? std::string() : std::string(target, static_cast<size_t>(length));
}

bool isDirectory(int root, const std::string& path) {
  struct stat status {};
  if (fstatat(root, path.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
  if (S_ISDIR(status.st_mode)) return true;
  errno = ENOTDIR;
  return false;
}

// A path from the root, some of whose parts are known to be no links.
class Walk {
 public:
  Walk(int root, const std::string& path, Leaving leaving)
      : root_(root), leaving_(leaving), ahead_(partsOf(path)) {}

  // Takes the next part; false, and the reason in errno, when there is no way on.
  bool step() {
    const std::string part = ahead_.front();
    ahead_.pop_front();
    if (part.empty()) return true;
    if (!isDirectory(root_, joined(names_))) return false;
    if (part == "..") {
      if (names_.empty()) return leave();
      names_.pop_back();
    } else if (part != ".") {
      names_.push_back(part);
      return followLink();
    }
    return true;
  }

  bool ended() const { return ahead_.empty(); }
  std::string path() const { return joined(names_); }

 private:
  // From the root there is no way up.
  bool leave() const {
    errno = EXDEV;
    return leaving_ == Leaving::StaysInside;
  }

  bool followLink() {
    const std::string target = linkAt(root_, joined(names_));
    if (target.empty()) return true;
    constexpr int kMostLinks = 40;  // The kernel's limit.
    if (++links_ > kMostLinks) {
      errno = ELOOP;
      return false;
    }
    if (target[0] == '/') {
      if (!leave()) return false;
      names_.clear();
    }
    if (target[0] != '/') names_.pop_back();
    const Parts parts = partsOf(target);
    ahead_.insert(ahead_.begin(), parts.begin(), parts.end());
    return true;
  }

  const int root_;
  const Leaving leaving_;
  Parts ahead_;
  std::vector<std::string> names_;
  int links_ = 0;
};

}  // namespace

int openInRoot(int root, const char* path, int flags, Leaving leaving) {
  const size_t length = strlen(path);
  if (length == 0 || length >= PATH_MAX) {
    errno = length == 0 ? ENOENT : ENAMETOOLONG;
    return -1;
  }
  Walk walk(root, path, leaving);
  while (!walk.ended()) {
    if (!walk.step()) return -1;
  }
  return openat(root, walk.path().c_str(), flags | O_NOFOLLOW);
}
