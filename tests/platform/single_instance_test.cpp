#include "tests/platform/SingleInstanceTest.h"

namespace qlx::platform {
namespace {

using test::ChildProcess;
using test::SingleInstanceTest;

TEST_F(SingleInstanceTest, ASecondProcessIsRefusedWhileTheFirstHoldsTheLock) {
  const auto mine = Take();
  ASSERT_TRUE(mine);
  EXPECT_FALSE(OtherProcessGetsIt());
}

TEST_F(SingleInstanceTest, ThisProcessIsRefusedWhileAnotherHoldsTheLock) {
  ChildProcess other(QLX_INSTANCE_CHILD, {name_, "hold"});
  ASSERT_EQ(other.ReadLine(), "taken");
  EXPECT_FALSE(Take());
}

TEST_F(SingleInstanceTest, TheLockIsFreeAgainOnceItsHolderIsGone) {
  Take().reset();
  EXPECT_TRUE(OtherProcessGetsIt());
}

TEST_F(SingleInstanceTest, TheLockIsFreeAgainOnceItsHolderWasKilled) {
  ChildProcess other(QLX_INSTANCE_CHILD, {name_, "hold"});
  ASSERT_EQ(other.ReadLine(), "taken");
  other.Kill();
  other.Wait();
  EXPECT_TRUE(Take());
}

TEST_F(SingleInstanceTest, ARefusalLeavesTheLockWithItsHolder) {
  const auto mine = Take();
  EXPECT_FALSE(OtherProcessGetsIt());
  EXPECT_FALSE(OtherProcessGetsIt());
}

}  // namespace
}  // namespace qlx::platform
