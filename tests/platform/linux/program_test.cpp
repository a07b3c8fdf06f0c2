#include "platform/program.h"

#include <filesystem>

#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/linux/path_text.h"

namespace qlx::platform {
namespace {

TEST(Program, FindsAFileBesideTheExecutable) {
  const auto executable = std::filesystem::read_symlink("/proc/self/exe");
  const auto found = ThisProgram().PathBesideExecutable(PathText(executable.filename().native()));
  ASSERT_TRUE(found);
  EXPECT_EQ(PathBytes(*found), executable.native());
}

TEST(Program, ADriveLetterPathIsNotAbsoluteHere) {
  EXPECT_FALSE(ThisProgram().IsAbsolutePath(L"C:\\Program Files\\x.xml"));
  EXPECT_TRUE(ThisProgram().IsAbsolutePath(L"/opt/x.xml"));
}

TEST(Program, IdentifiersComeFromTheKernel) {
  EXPECT_EQ(ThisProgram().ProcessId(), static_cast<std::uint32_t>(getpid()));
  EXPECT_EQ(ThisProgram().ThreadId(), static_cast<std::uint32_t>(getpid()));
}

}  // namespace
}  // namespace qlx::platform
