// SPDX-License-Identifier: Apache-2.0
#include "loader/calib_reader.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "tests/kit/doubles.h"
#include "tests/kit/temporary_tree.h"
#include "tests/kit/virtual_slot.h"

namespace {

// text_file_test.cpp tests how a text is read, and what an exception costs.
class CalibReaderTest : public testing::Test {
 protected:
  void SetUp() override { takeLog(); }

  TemporaryTree tree;
  CalibReader reader;
};

TEST_F(CalibReaderTest, TextIsReadWhole) {
  const std::string text("a\r\n \t\0\n\n", 8);
  tree.write("folder/file", text);
  EXPECT_EQ(reader.read(tree.root() + "/folder/file"), text);
  EXPECT_EQ(reader.read("./folder/../folder/file"), text);
  EXPECT_EQ(reader.read("folder"), "");
  EXPECT_LOG();
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
  tree.write("file", "text");
  for (const char* path : {"missing", "", "file/below", "file\r", "100%s%n"}) {
    EXPECT_EQ(reader.read(path), std::nullopt);
    EXPECT_LOG(error(std::string("Unable to open file ") + path));
  }
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
