// SPDX-License-Identifier: Apache-2.0
#include "tools/device/target_root.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "tests/kit/temporary_tree.h"
#include "tools/device/open_redirect.h"

namespace {

using android::base::unique_fd;

std::string textOf(const unique_fd& file) {
  char text[64];
  const ssize_t length = file.ok() ? read(file, text, sizeof(text)) : -1;
  return length < 0 ? "none" : std::string(text, static_cast<size_t>(length));
}

// What the C library's open() gives this thread.
std::string openedText(const std::string& path) {
  return textOf(unique_fd(open(path.c_str(), O_RDONLY | O_CLOEXEC)));
}

// A target's tree in the host's folder `target`. Names that both trees have hold "host" in the
// host's. The working directory is the host's folder.
class TargetRootTest : public testing::Test {
 protected:
  TargetRootTest() {
    host_.write("name", "host");
    host_.write("only_host", "host");
    host_.write("target/name", "target");
    host_.write("target/data/uwb/name", "nested");
    host_.write("target" + host_.root() + "/name", "target below the host's own path");
  }

  void link(const std::string& to, const std::string& name) const {
    ASSERT_EQ(symlink(to.c_str(), ("target/" + name).c_str()), 0);
  }

  static std::string read(const TargetRoot& root, const std::string& path) {
    return textOf(unique_fd(root.open(path, O_RDONLY | O_CLOEXEC)));
  }

  // The reason for which the path cannot be opened; 0 when it can.
  static int failure(const TargetRoot& root, const std::string& path, int flags = O_RDONLY) {
    return unique_fd(root.open(path, flags)).ok() ? 0 : errno;
  }

  // Why there is no such tree; empty when there is one.
  static std::string complaint(const std::string& directory, const std::string& start,
                               const std::vector<std::string>& maps = {}) {
    try {
      const TargetRoot root(directory, start, maps);
      return {};
    } catch (const std::runtime_error& e) {
      return e.what();
    }
  }

  const TemporaryTree host_;
};

TEST_F(TargetRootTest, AbsoluteAndRelativePathsBeginAtTheTree) {
  const TargetRoot root("target");
  EXPECT_EQ(read(root, "/name"), "target");
  EXPECT_EQ(read(root, "name"), "target");
  EXPECT_EQ(read(root, "/data//uwb/./name"), "nested");
  EXPECT_EQ(read(root, "/../../name"), "target");
  EXPECT_EQ(read(root, host_.root() + "/name"), "target below the host's own path");
  EXPECT_EQ(failure(root, "only_host"), ENOENT);
  EXPECT_EQ(failure(root, host_.root() + "/only_host"), ENOENT);
}

TEST_F(TargetRootTest, RelativePathsBeginAtTheWorkingDirectory) {
  const TargetRoot root(host_.root() + "/target", "/data/uwb");
  EXPECT_EQ(read(root, "name"), "nested");
  EXPECT_EQ(read(root, "../../../../name"), "target");
  EXPECT_EQ(read(root, "/name"), "target");
  EXPECT_EQ(failure(root, "uwb/name"), ENOENT);
  EXPECT_EQ(failure(root, ""), ENOENT);
}

TEST_F(TargetRootTest, LinksStayInTheTree) {
  link("/name", "absolute");
  link("../../name", "data/uwb/up");
  link("../../../../../name", "data/uwb/climbing");
  link("data/uwb", "folder");
  link("/folder", "chain");
  link("/only_host", "absolute_to_host");
  link("../only_host", "climbing_to_host");
  link(host_.root() + "/only_host", "host's_path");
  const TargetRoot root("target");
  EXPECT_EQ(read(root, "/absolute"), "target");
  EXPECT_EQ(read(root, "/data/uwb/up"), "target");
  EXPECT_EQ(read(root, "/folder/climbing"), "target");
  EXPECT_EQ(read(root, "/chain/name"), "nested");
  EXPECT_EQ(read(root, "/chain/../name"), "none");
  for (const char* path : {"/absolute_to_host", "/climbing_to_host", "/host's_path"}) {
    EXPECT_EQ(failure(root, path), ENOENT) << path;
  }
}

TEST_F(TargetRootTest, LinksThatLeadNowhere) {
  link("gone", "dangling");
  link("loop", "loop");
  link("/pong", "ping");
  link("/ping", "pong");
  const TargetRoot root("target");
  EXPECT_EQ(failure(root, "/dangling"), ENOENT);
  EXPECT_EQ(failure(root, "/loop"), ELOOP);
  EXPECT_EQ(failure(root, "/ping"), ELOOP);
  EXPECT_EQ(failure(root, "/gone/../name"), ENOENT);
}

TEST_F(TargetRootTest, FortyLinksAreTheMost) {
  link("name", "link1");
  for (int i = 2; i <= 41; ++i) link("link" + std::to_string(i - 1), "link" + std::to_string(i));
  const TargetRoot root("target");
  EXPECT_EQ(read(root, "/link40"), "target");
  EXPECT_EQ(failure(root, "/link41"), ELOOP);
}

TEST_F(TargetRootTest, DirectoriesAndFilesAreToldApart) {
  const TargetRoot root("target");
  EXPECT_EQ(failure(root, "/data", O_RDONLY | O_DIRECTORY), 0);
  EXPECT_EQ(failure(root, "/data/"), 0);
  EXPECT_EQ(failure(root, "/"), 0);
  EXPECT_EQ(failure(root, "/name", O_PATH | O_DIRECTORY), ENOTDIR);
  EXPECT_EQ(failure(root, "/name/"), ENOTDIR);
  EXPECT_EQ(failure(root, "/name/."), ENOTDIR);
  EXPECT_EQ(failure(root, "/name/below"), ENOTDIR);
  EXPECT_EQ(failure(root, "/" + std::string(256, 'n')), ENAMETOOLONG);
}

TEST_F(TargetRootTest, NoDirectoryIsTheHostsTree) {
  const TargetRoot root("");
  EXPECT_EQ(read(root, host_.root() + "/name"), "host");
  EXPECT_EQ(read(root, "target/name"), "target");
}

TEST_F(TargetRootTest, WhatIsNoDirectoryIsToldInOneLine) {
  EXPECT_EQ(complaint("gone", "/"), "cannot make gone the root: No such file or directory");
  EXPECT_EQ(complaint("name", "/"), "cannot make name the root: Not a directory");
  EXPECT_EQ(complaint("target", "/gone"), "cannot make target the root: No such file or directory");
  EXPECT_EQ(complaint("target", "/name"), "cannot make target the root: Not a directory");
  EXPECT_EQ(complaint("target", "/data"), "");
}

TEST_F(TargetRootTest, FoldersOfTheHostTakeThePlaceOfTheTrees) {
  host_.write("my=sources/uwb/name", "mapped");
  host_.write("target/vendor/etc/other", "target");
  ASSERT_EQ(symlink("/only_host", "my=sources/absolute"), 0);
  ASSERT_EQ(symlink("../../only_host", "my=sources/uwb/climbing"), 0);
  ASSERT_EQ(symlink("uwb/name", "my=sources/inside"), 0);
  const TargetRoot root("target", "/", {"/vendor/etc=my=sources", "/vendor=target/data/"});
  EXPECT_EQ(read(root, "/vendor/etc/uwb/name"), "mapped");
  EXPECT_EQ(read(root, "vendor/./etc/../etc//uwb/name"), "mapped");
  EXPECT_EQ(read(root, "/vendor/etc/inside"), "mapped");
  EXPECT_EQ(read(root, "/vendor/uwb/name"), "nested");
  EXPECT_EQ(read(root, "/name"), "target");
  EXPECT_EQ(failure(root, "/vendor/etc/absolute"), EXDEV);
  EXPECT_EQ(failure(root, "/vendor/etc/uwb/climbing"), EXDEV);
  EXPECT_EQ(failure(root, "/vendor/etc/other"), ENOENT);
  EXPECT_EQ(failure(root, "/vendor/etcetera"), ENOENT);
  EXPECT_EQ(failure(root, ""), ENOENT);
  EXPECT_EQ(failure(root, "/vendor/etc/", O_RDONLY | O_DIRECTORY), 0);
  EXPECT_EQ(failure(root, "/vendor/etc", O_RDONLY | O_DIRECTORY), 0);
  EXPECT_EQ(root.hostPath("/vendor/etc/uwb/name"), "my=sources/uwb/name");
  EXPECT_EQ(root.hostPath("/vendor/uwb/name"), "target/data//uwb/name");
  EXPECT_EQ(root.hostPath("./name"), "target/name");
  EXPECT_EQ(root.hostPath("/.hidden/name"), "target/.hidden/name");
  EXPECT_EQ(read(TargetRoot("", "/", {"//vendor/./etc=my=sources"}), "/vendor/etc/uwb/name"),
            "mapped");
}

TEST_F(TargetRootTest, WithoutARootThereIsOnlyWhatIsMapped) {
  const TargetRoot root("", "/", {"/data/=target/data"});
  EXPECT_EQ(read(root, "/data/uwb/name"), "nested");
  EXPECT_EQ(failure(root, host_.root() + "/name"), ENOENT);
  EXPECT_EQ(failure(root, "name"), ENOENT);
}

TEST_F(TargetRootTest, WhatIsNoMapIsToldInOneLine) {
  for (const char* map : {"target", "data=target", "=target", "", "/data"}) {
    EXPECT_EQ(complaint("target", "/", {map}),
              "--map takes /PATH=DIR, not '" + std::string(map) + "'");
  }
  EXPECT_EQ(complaint("target", "/", {"/data=gone"}),
            "cannot use gone for --map: No such file or directory");
  EXPECT_EQ(complaint("target", "/", {"/data=name"}), "cannot use name for --map: Not a directory");
}

TEST_F(TargetRootTest, RedirectedReadsAreThoseOfTheTree) {
  const TargetRoot root("target");
  EXPECT_EQ(openedText("name"), "host");
  {
    const OpenRedirect redirect(root);
    EXPECT_EQ(openedText("name"), "target");
    EXPECT_EQ(openedText("only_host"), "none");
    EXPECT_EQ(textOf(unique_fd(open("/name", O_RDONLY | O_LARGEFILE))), "target");
  }
  EXPECT_EQ(openedText("name"), "host");
}

// Such as results and the counters of a coverage build.
TEST_F(TargetRootTest, OpensThatWriteAreNotRedirected) {
  const TargetRoot root("target");
  const OpenRedirect redirect(root);
  const mode_t mask = umask(0);
  EXPECT_TRUE(unique_fd(open("made", O_RDWR | O_CREAT, 0640)).ok());
  EXPECT_TRUE(unique_fd(open("read_made", O_RDONLY | O_CREAT, 0604)).ok());
  EXPECT_TRUE(unique_fd(open("only_host", O_WRONLY)).ok());
  EXPECT_TRUE(unique_fd(open("only_host", O_RDWR)).ok());
  EXPECT_TRUE(unique_fd(open("only_host", O_RDONLY | O_TRUNC)).ok());
  // A file without a name, where the file system has such.
  const unique_fd nameless(open(".", O_RDWR | O_TMPFILE, 0600));
  EXPECT_TRUE(nameless.ok() || errno == EOPNOTSUPP);
  umask(mask);
  struct stat status {};
  EXPECT_EQ(stat("made", &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
  EXPECT_EQ(stat("read_made", &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0604U);
  EXPECT_NE(stat("target/made", &status), 0);
}

// Whoever only looks opens what has an end; where a path leads can be asked of anything.
TEST_F(TargetRootTest, SpecialFilesAreOpenedOnRequest) {
  ASSERT_EQ(mkfifo("target/pipe", 0600), 0);
  const TargetRoot root("target");
  const auto opens = [](const char* path, int flags) {
    return unique_fd(open(path, flags)).ok() ? 0 : errno;
  };
  {
    const OpenRedirect redirect(root, OpenRedirect::Opens::NoSpecialFiles);
    EXPECT_EQ(opens("pipe", O_RDONLY | O_NONBLOCK), ENXIO);
    EXPECT_EQ(opens("pipe", O_PATH), 0);
    EXPECT_EQ(opens("name", O_RDONLY), 0);
    EXPECT_EQ(opens("data", O_RDONLY), 0);
    EXPECT_EQ(opens("gone", O_RDONLY), ENOENT);
  }
  const OpenRedirect redirect(root);
  EXPECT_EQ(opens("pipe", O_RDONLY | O_NONBLOCK), 0);
}

TEST_F(TargetRootTest, TheCLibrarysOwnOpensAreNotRedirected) {
  const TargetRoot root("target");
  const OpenRedirect redirect(root);
  std::ostringstream text;
  text << std::ifstream("name").rdbuf();
  EXPECT_EQ(text.str(), "host");
}

TEST_F(TargetRootTest, OtherThreadsAreNotRedirected) {
  const TargetRoot root("target");
  const OpenRedirect redirect(root);
  std::string text;
  std::thread([&] { text = openedText("name"); }).join();
  EXPECT_EQ(text, "host");
  EXPECT_EQ(openedText("name"), "target");
}

}  // namespace
