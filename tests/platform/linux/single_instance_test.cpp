// The directory of the lock.
#include "tests/platform/SingleInstanceTest.h"

namespace qlx::platform {
namespace {

using test::SingleInstanceTest;

TEST_F(SingleInstanceTest, ALockDirectoryThatCannotBeUsedDoesNotKeepTheToolFromStarting) {
  test::SetEnvironment("XDG_RUNTIME_DIR", (directory_.path() / "missing").string());
  EXPECT_TRUE(Take());
}

}  // namespace
}  // namespace qlx::platform
