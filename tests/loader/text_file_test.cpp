// SPDX-License-Identifier: Apache-2.0
#include "loader/text_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <thread>

#include "tests/support/temporary_tree.h"

namespace {

std::string textOf(const std::string& path) {
  std::filebuf file;
  EXPECT_NE(file.open(path, std::ios_base::in), nullptr) << path;
  return readText(file, path);
}

// A text in which no two places of a block's distance are alike.
std::string textOfSize(size_t size) {
  std::string text(size, '\0');
  for (size_t i = 0; i < size; ++i) text[i] = static_cast<char>(i * 7 + i / 251);
  return text;
}

TEST(TextFile, TextsOfEverySizeAreRead) {
  const TemporaryTree tree;
  for (const size_t size : {0u, 1u, 15u, 16u, 4095u, 4096u, 4097u, 8190u, 8191u, 8192u, 8193u,
                            16382u, 16383u, 100000u}) {
    tree.write("file", textOfSize(size));
    EXPECT_EQ(textOf("file"), textOfSize(size)) << size;
  }
}

TEST(TextFile, EveryByteIsKept) {
  const TemporaryTree tree;
  const std::string text("a\r\n\0\xff\x1a\nb", 8);
  tree.write("file", text);
  EXPECT_EQ(textOf("file"), text);
}

TEST(TextFile, ALargeTextIsHeldOnce) {
  const TemporaryTree tree;
  constexpr size_t kSize = 1000000;
  tree.write("file", textOfSize(kSize));
  EXPECT_LT(textOf("file").capacity(), kSize + kSize / 20);
}

TEST(TextFile, AFileThatVanishesWhileItIsReadIsReadToItsEnd) {
  const TemporaryTree tree;
  tree.write("file", textOfSize(50000));
  std::filebuf file;
  ASSERT_NE(file.open("file", std::ios_base::in), nullptr);
  tree.remove("file");
  EXPECT_EQ(readText(file, "file"), textOfSize(50000));
}

TEST(TextFile, ADirectoryHasNoText) {
  const TemporaryTree tree;
  tree.makeDirectory("folder");
  EXPECT_EQ(textOf("folder"), "");
}

TEST(TextFile, AReadErrorEndsTheText) {
  // The first page of a process's memory is never there: reading it fails.
  EXPECT_EQ(textOf("/proc/self/mem"), "");
}

TEST(TextFile, AFileThatCannotTellItsSizeIsReadToItsEnd) {
  const TemporaryTree tree;
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  const std::string text = textOfSize(50000);
  std::thread writer([&text] {
    std::filebuf pipe;
    pipe.open("pipe", std::ios_base::out);
    pipe.sputn(text.data(), static_cast<std::streamsize>(text.size()));
  });
  EXPECT_EQ(textOf("pipe"), text);
  writer.join();
}

}  // namespace
