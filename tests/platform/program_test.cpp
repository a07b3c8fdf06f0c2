#include "platform/program.h"

#include <chrono>
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

namespace qlx::platform {
namespace {

TEST(Program, AFileBesideTheExecutableIsInItsDirectory) {
  const auto found = ThisProgram().PathBesideExecutable(L"QLXConfig.xml");
  ASSERT_TRUE(found);
  EXPECT_TRUE(ThisProgram().IsAbsolutePath(*found));
  EXPECT_EQ(std::filesystem::path(*found).filename(), "QLXConfig.xml");
  EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(*found).parent_path()));
}

TEST(Program, ARelativePathIsNotAbsolute) {
  for (const wchar_t* path : {L"", L"x.xml", L"folder/x.xml", L"./x.xml", L"../x.xml"})
    EXPECT_FALSE(ThisProgram().IsAbsolutePath(path)) << path;
}

TEST(Program, EachThreadHasItsOwnIdentifier) {
  std::uint32_t other = 0;
  std::thread([&] { other = ThisProgram().ThreadId(); }).join();
  EXPECT_NE(other, 0U);
  EXPECT_NE(other, ThisProgram().ThreadId());
}

TEST(Program, NowIsTheTimeOfTheSystemsClock) {
  const auto now = ThisProgram().Now();
  const std::int64_t clock = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  EXPECT_GE(clock, now.seconds);
  EXPECT_LT(clock, now.seconds + 3600);
  EXPECT_LT(now.milliseconds, 1000);
}

}  // namespace
}  // namespace qlx::platform
