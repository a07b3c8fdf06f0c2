#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "sim/LogFile.h"
#include "tests/sim/PlayedServices.h"

namespace qlx::sim {
namespace {

std::string TextOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class LogFileTest : public testing::Test {
 protected:
  ScratchDirectory directory_;
  std::filesystem::path path_ = directory_.path() / "qlx.log";
  std::filesystem::path full_ = directory_.path() / "qlx.log.1";
};

TEST_F(LogFileTest, AppendsToWhatIsThere) {
  EXPECT_TRUE(LogFile(path_, 100).Append("one"));
  EXPECT_TRUE(LogFile(path_, 100).Append("two"));
  EXPECT_EQ(TextOf(path_), "onetwo");
}

TEST_F(LogFileTest, BytesPastTheBoundGoToANewFileAndTheFullOneIsKept) {
  EXPECT_TRUE(LogFile(path_, 4).Append("abcdef"));
  EXPECT_EQ(TextOf(full_), "abcd");
  EXPECT_EQ(TextOf(path_), "ef");
}

TEST_F(LogFileTest, AFurtherFullFileTakesThePlaceOfTheOneBefore) {
  EXPECT_TRUE(LogFile(path_, 2).Append("abcdef"));
  EXPECT_EQ(TextOf(full_), "cd");
  EXPECT_EQ(TextOf(path_), "ef");
}

TEST_F(LogFileTest, WhatIsThereCountsTowardsTheBound) {
  LogFile(path_, 4).Append("abc");
  LogFile(path_, 4).Append("def");
  EXPECT_EQ(TextOf(full_), "abcd");
  EXPECT_EQ(TextOf(path_), "ef");
}

TEST_F(LogFileTest, ABoundOfNothingStillTakesBytes) {
  EXPECT_TRUE(LogFile(path_, 0).Append("ab"));
  EXPECT_EQ(TextOf(path_), "b");
}

TEST_F(LogFileTest, AFileThatCannotBeOpenedSaysSo) {
  EXPECT_FALSE(LogFile(directory_.path() / "none" / "qlx.log", 4).Append("ab"));
}

TEST_F(LogFileTest, ADiskWithoutRoomSaysSo) {
  EXPECT_FALSE(LogFile("/dev/full", 1 << 20).Append("ab"));
}

}  // namespace
}  // namespace qlx::sim
