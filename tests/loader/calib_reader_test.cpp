// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_reader.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

#include "tests/kit/allocations.h"
#include "tests/kit/doubles.h"
#include "tests/kit/temporary_tree.h"
#include "tests/kit/virtual_slot.h"

namespace {

class CalibReaderTest : public testing::Test {
 protected:
  void SetUp() override { takeLog(); }

  void expectWhole(const std::string& text) {
    tree.write("file", text);
    EXPECT_EQ(reader.read("file"), text);
    EXPECT_LOG();
  }

  TemporaryTree tree;
  CalibReader reader;
};

TEST_F(CalibReaderTest, TextIsReadWhole) {
  expectWhole("version=1\nxtal_trim=2\n");
  expectWhole("no line feed at the end");
  expectWhole("\n");
  expectWhole("\r\n \t\r\n\n\n");
}

TEST_F(CalibReaderTest, EveryByteIsKept) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  expectWhole(all + all);
}

TEST_F(CalibReaderTest, LargeFileIsReadWhole) {
  std::string text;
  for (int line = 0; text.size() < 300000; ++line) text += std::to_string(line) + "\r\n";
  expectWhole(text);
}

TEST_F(CalibReaderTest, EmptyFileHasAnEmptyText) {
  expectWhole("");
}

TEST_F(CalibReaderTest, AbsoluteAndRelativePaths) {
  tree.write("a/b/file", "text");
  EXPECT_EQ(reader.read(tree.root() + "/a/b/file"), "text");
  EXPECT_EQ(reader.read("a/b/file"), "text");
  EXPECT_EQ(reader.read("./a/../a/b/file"), "text");
}

TEST_F(CalibReaderTest, EveryCallReadsAfresh) {
  tree.write("file", "one");
  EXPECT_EQ(reader.read("file"), "one");
  tree.write("file", "two");
  EXPECT_EQ(reader.read("file"), "two");
  tree.remove("file");
  EXPECT_EQ(reader.read("file"), std::nullopt);
}

TEST_F(CalibReaderTest, UnopenableFileIsLogged) {
  EXPECT_EQ(reader.read("missing"), std::nullopt);
  EXPECT_LOG(error("Unable to open file missing"));
  EXPECT_EQ(reader.read(""), std::nullopt);
  EXPECT_LOG(error("Unable to open file "));
  tree.write("file", "text");
  EXPECT_EQ(reader.read("file/below"), std::nullopt);
  EXPECT_LOG(error("Unable to open file file/below"));
  EXPECT_EQ(reader.read("file\r"), std::nullopt);
  EXPECT_LOG(error("Unable to open file file\r"));
}

TEST_F(CalibReaderTest, PercentSignsOfAPathAreLoggedAsTheyStand) {
  EXPECT_EQ(reader.read("100%s%n"), std::nullopt);
  EXPECT_LOG(error("Unable to open file 100%s%n"));
}

TEST_F(CalibReaderTest, DirectoryHasAnEmptyText) {
  tree.makeDirectory("directory");
  EXPECT_EQ(reader.read("directory"), "");
  EXPECT_LOG();
}

TEST_F(CalibReaderTest, ExceptionWhileReadingIsLogged) {
  const std::string text(1000, 'x');
  tree.write("100%s", text);
  const size_t before = allocationCount();
  EXPECT_EQ(reader.read("100%s"), text);
  const size_t last = allocationCount() - before - 1;
  takeLog();
  std::optional<std::string> read = "";
  {
    // The last allocation of a reading is that of the text to be returned.
    const FailingAllocation failure(last);
    read = reader.read("100%s");
    EXPECT_TRUE(FailingAllocation::reached());
  }
  EXPECT_EQ(read, std::nullopt);
  EXPECT_LOG(error("Failed to parse calib from 100%s, reason: no memory left"));
  EXPECT_EQ(reader.read("100%s"), text);
}

TEST_F(CalibReaderTest, IsUsedThroughItsInterface) {
  tree.write("file", "text");
  std::unique_ptr<ICalibReader> any = std::make_unique<CalibReader>();
  EXPECT_EQ(any->read("file"), "text");
}

TEST(CalibReader, HasNoDataMembers) {
  EXPECT_EQ(sizeof(CalibReader), sizeof(void*));
  EXPECT_TRUE((std::is_base_of_v<ICalibReader, CalibReader>));
}

TEST(ICalibReader, DestructorComesBeforeRead) {
  EXPECT_TRUE(std::is_abstract_v<ICalibReader>);
  EXPECT_TRUE(std::has_virtual_destructor_v<ICalibReader>);
  // A destructor takes two slots.
  EXPECT_EQ(slotOf(&ICalibReader::read), 2U);
}

}  // namespace
