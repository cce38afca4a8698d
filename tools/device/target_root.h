// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <android-base/unique_fd.h>

#include <list>
#include <optional>
#include <string>
#include <vector>

// What becomes of a link, or of "..", that leads out of the root.
enum class Leaving { StaysInside, Fails };

// As open(2), with the directory of the descriptor `root` as the root and the working directory.
// For flags that create no file. A link that leads out stays inside or fails with EXDEV.
int openInRoot(int root, const char* path, int flags, Leaving leaving = Leaving::StaysInside);

// A folder of the host in place of one of the target: "/vendor/etc=device/acme/uwb".
class PathMap {
 public:
  // Throws std::runtime_error, one line, for another text or folder.
  explicit PathMap(const std::string& text);

  const std::string& device() const { return device_; }

  // The path below the folder; nothing for a path that is elsewhere.
  std::optional<std::string> below(const std::string& path) const;
  // The name that leads from the directory to the folder; empty when none does.
  std::string nameIn(const std::string& directory) const;
  int open(const std::string& below, int flags) const;
  std::string hostPath(const std::string& below) const { return host_ + "/" + below; }

 private:
  const std::string device_;  // With a slash at the end.
  const std::string host_;
  const android::base::unique_fd folder_;
};

// A target's file tree. Absolute paths, absolute links and links that climb stay inside it. Needs
// no privilege, and leaves the root and the working directory of the process as they are.
class TargetRoot {
 public:
  // Relative paths begin at `working_directory`, a path in the tree. An empty `directory` stands
  // for the host's own tree, or for an empty one where there are maps. Where one map is inside
  // another, the inner one holds. Throws std::runtime_error, one line, when the tree cannot be
  // used.
  explicit TargetRoot(const std::string& directory, const std::string& working_directory = "/",
                      const std::vector<std::string>& maps = {});

  // As open(2) in the tree, for flags that create no file.
  int open(const std::string& path, int flags) const;

  // The names of maps in the directory, which a listing of it may lack.
  std::vector<std::string> mapsIn(const std::string& directory) const;

  // What the host calls the file that has this path in the tree.
  std::string hostPath(const std::string& path) const;

 private:
  std::list<PathMap> maps_;  // An inner one before the outer ones.
  const std::string name_;
  const android::base::unique_fd directory_;
  const std::string relative_to_;  // What relative paths are appended to.
};
