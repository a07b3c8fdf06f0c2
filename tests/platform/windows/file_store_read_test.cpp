#include <windows.h>

#include "platform/windows/Handle.h"
#include "tests/platform/FileStoreTest.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, ADeviceOrAPipeIsRefusedWithoutWaiting) {
  const wchar_t pipe[] = L"\\\\.\\pipe\\qlx-file-store-test";
  const Handle server(CreateNamedPipeW(pipe, PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 0, 0, 0, nullptr));
  ASSERT_TRUE(server);
  EXPECT_EQ(ReadStatusOf(pipe), ReadStatus::kNotRegular);
  EXPECT_EQ(ReadStatusOf(L"\\\\.\\NUL"), ReadStatus::kNotRegular);
}

TEST_F(FileStoreTest, AFileThatSomebodyHoldsForHimselfIsUnreadable) {
  Put(Path(), "x");
  const Handle other(CreateFileW(Path().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(other);
  EXPECT_EQ(ReadStatusOf(Path()), ReadStatus::kUnreadable);
}

TEST_F(FileStoreTest, AFileThatAnotherProgramWritesIsReadMeanwhile) {
  Put(Path(), "half");
  const Handle other(
      CreateFileW(Path().c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(other);
  EXPECT_EQ(store_.Read(Path().wstring(), kLimit).bytes, "half");
}

TEST_F(FileStoreTest, APathThatIsTooLongIsMissingAndNotReplaced) {
  const fs::path path = directory_ / std::string(300, 'x');
  EXPECT_NE(ReadStatusOf(path), ReadStatus::kRead);
  EXPECT_TRUE(Replace(path));
  EXPECT_TRUE(Names().empty());
}

}  // namespace
}  // namespace qlx::platform
