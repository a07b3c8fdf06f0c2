#include <windows.h>
#include <aclapi.h>
#include <sddl.h>

#include "platform/windows/Handle.h"
#include "tests/platform/FileStoreTest.h"
#include "tests/support/windows/file_rights.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, AReadOnlyFileIsNotReplacedThoughARenameWouldDoIt) {
  Put(Path(), "old");
  ASSERT_TRUE(SetFileAttributesW(Path().c_str(), FILE_ATTRIBUTE_READONLY));
  const auto failure = Replace(Path());
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->error, ERROR_ACCESS_DENIED);
  EXPECT_EQ(Bytes(Path()), "old");
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
  SetFileAttributesW(Path().c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(FileStoreTest, AReplacedFileStaysHidden) {
  Put(Path(), "old");
  ASSERT_TRUE(SetFileAttributesW(Path().c_str(), FILE_ATTRIBUTE_HIDDEN));
  if ((GetFileAttributesW(Path().c_str()) & FILE_ATTRIBUTE_HIDDEN) == 0)
    GTEST_SKIP() << "no such attribute here";
  EXPECT_FALSE(Replace(Path()));
  EXPECT_NE(GetFileAttributesW(Path().c_str()) & FILE_ATTRIBUTE_HIDDEN, 0U);
}

TEST_F(FileStoreTest, AReplacedFileKeepsItsRights) {
  Put(Path("other"), "");
  Put(Path(), "old");
  test::SetRights(Path(), L"D:P(A;;FA;;;WD)(A;;FA;;;BA)");
  const std::wstring before = test::Rights(Path());
  ASSERT_NE(before, test::Rights(Path("other")));
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(test::Rights(Path()), before);
}

TEST_F(FileStoreTest, AFileThatSomebodyHoldsForHimselfIsNotReplaced) {
  Put(Path(), "old");
  {
    const Handle other(
        CreateFileW(Path().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(other);
    const auto failure = Replace(Path());
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->error, ERROR_SHARING_VIOLATION);
  }
  EXPECT_EQ(Bytes(Path()), "old");
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
  EXPECT_FALSE(Replace(Path()));
}

TEST_F(FileStoreTest, ADeviceInTheFilesPlaceIsAFailure) {
  EXPECT_TRUE(Replace(L"\\\\.\\NUL"));
  EXPECT_TRUE(Names().empty());
}

}  // namespace
}  // namespace qlx::platform
