// The mutex as the system knows it.
#include <windows.h>

#include "platform/text.h"
#include "platform/windows/Handle.h"
#include "tests/platform/SingleInstanceTest.h"

namespace qlx::platform {
namespace {

using test::SingleInstanceTest;

TEST_F(SingleInstanceTest, TheLockIsAMutexOfThatName) {
  const auto mine = Take();
  EXPECT_TRUE(Handle(OpenMutexW(SYNCHRONIZE, FALSE, FromUtf8(name_).c_str())));
}

TEST_F(SingleInstanceTest, AMutexThatThisProcessMayNotOpenIsHeldByAnother) {
  SECURITY_DESCRIPTOR nobody{};
  ACL empty{};
  InitializeSecurityDescriptor(&nobody, SECURITY_DESCRIPTOR_REVISION);
  InitializeAcl(&empty, sizeof empty, ACL_REVISION);
  SetSecurityDescriptorDacl(&nobody, TRUE, &empty, FALSE);
  SECURITY_ATTRIBUTES attributes{sizeof attributes, &nobody, FALSE};
  const Handle of_another(CreateMutexW(&attributes, FALSE, FromUtf8(name_).c_str()));
  ASSERT_TRUE(of_another);
  EXPECT_FALSE(Take());
}

TEST_F(SingleInstanceTest, ANameThatCannotBeUsedDoesNotKeepTheToolFromStarting) {
  const Handle event(CreateEventW(nullptr, FALSE, FALSE, FromUtf8(name_).c_str()));
  ASSERT_TRUE(event);
  EXPECT_TRUE(Take());
}

}  // namespace
}  // namespace qlx::platform
