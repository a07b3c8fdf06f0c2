#include <windows.h>
#include <sddl.h>

#include "platform/windows/private_directory.h"
#include "tests/platform/DirectoryTest.h"
#include "tests/support/windows/file_rights.h"

namespace qlx::platform {
namespace {

TEST_F(DirectoryTest, APrivateOneIsForItsUserAlone) {
  EXPECT_TRUE(MakePrivateDirectory(Path("own")));
  EXPECT_TRUE(IsPrivateDirectory(Path("own")));
}

TEST_F(DirectoryTest, OneThatOthersMayChangeIsNotPrivate) {
  fs::create_directory(root_ / "shared");
  test::SetRights(root_ / "shared", L"D:P(A;OICI;FA;;;BA)(A;OICI;FA;;;WD)");
  EXPECT_FALSE(MakePrivateDirectory(Path("shared")));
}

TEST_F(DirectoryTest, OneThatOthersMayOnlyReadIsPrivate) {
  fs::create_directory(root_ / "read");
  test::SetRights(root_ / "read", L"D:P(A;OICI;FA;;;BA)(A;OICI;FR;;;WD)");
  EXPECT_TRUE(MakePrivateDirectory(Path("read")));
}

TEST_F(DirectoryTest, TheRootIsKnownHoweverItIsSpelled) {
  for (const wchar_t* root : {L"C:\\", L"C:\\\\", L"C:/", L"C:\\.", L"C:\\windows\\..", L"\\", L"\\\\?\\C:\\",
                              L"\\\\server\\share", L"\\\\server\\share\\", L"Q:\\"}) {
    EXPECT_TRUE(IsRootDirectory(root)) << fs::path(root);
  }
}

TEST_F(DirectoryTest, TheSuitesDataDirectoryIsNoRoot) {
  for (const wchar_t* other :
       {L"C:\\Program Files\\Harlune\\MZP\\DAT\\", L"C:\\DAT\\", L"\\\\server\\share\\DAT"})
    EXPECT_FALSE(IsRootDirectory(other)) << fs::path(other);
}

}  // namespace
}  // namespace qlx::platform
