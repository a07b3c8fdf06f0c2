#include "platform/single_instance.h"

#include <filesystem>

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qlx::platform {
namespace {

class SingleInstanceTest : public testing::Test {
 protected:
  SingleInstanceTest() {
    std::string name = testing::TempDir() + "lockXXXXXX";
    directory_ = mkdtemp(name.data());
    setenv("XDG_RUNTIME_DIR", directory_.c_str(), 1);
  }
  ~SingleInstanceTest() override { std::filesystem::remove_all(directory_); }

  /// True when a further process gets the lock.
  static bool OtherProcessGetsIt() {
    const pid_t child = fork();
    if (child == 0) _exit(TakeSingleInstance("__MZPCONFIG__") ? 0 : 1);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }

  std::filesystem::path directory_;
};

TEST_F(SingleInstanceTest, ASecondProcessIsRefusedWhileTheFirstHoldsTheLock) {
  const auto mine = TakeSingleInstance("__MZPCONFIG__");
  ASSERT_TRUE(mine);
  EXPECT_FALSE(OtherProcessGetsIt());
}

TEST_F(SingleInstanceTest, TheLockIsFreeAgainOnceItsHolderIsGone) {
  TakeSingleInstance("__MZPCONFIG__").reset();
  EXPECT_TRUE(OtherProcessGetsIt());
}

TEST_F(SingleInstanceTest, ALockDirectoryThatCannotBeUsedDoesNotKeepTheToolFromStarting) {
  setenv("XDG_RUNTIME_DIR", (directory_ / "missing").c_str(), 1);
  EXPECT_TRUE(TakeSingleInstance("__MZPCONFIG__"));
}

}  // namespace
}  // namespace qlx::platform
