#include <sys/socket.h>
#include <sys/un.h>

#include "tests/platform/FileStoreTest.h"
#include "tests/platform/linux/file_rights.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, APipeOrADeviceIsRefusedWithoutWaiting) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(ReadStatusOf(Path("pipe")), ReadStatus::kNotRegular);
  EXPECT_EQ(ReadStatusOf("/dev/zero"), ReadStatus::kNotRegular);
}

TEST_F(FileStoreTest, AFileThatThisUserMayNotReadIsUnreadable) {
  if (geteuid() != 0) GTEST_SKIP() << "needs another user";
  Put(Path(), "x");
  fs::permissions(Path(), fs::perms::none);
  EXPECT_EQ(InAnotherProcess([&] {
              return seteuid(kNobody) == 0 && ReadStatusOf(Path()) == ReadStatus::kUnreadable ? 0 : 1;
            }),
            0);
}

TEST_F(FileStoreTest, AFileThatGrowsPastItsStatedSizeIsReadToItsEnd) {
  // The kernel states size 0 for these and hands out more: the same as a file that grows after the look at
  // it.
  const fs::path status = "/proc/self/status";
  const ReadResult whole = store_.Read(status.wstring(), 1 << 20);
  EXPECT_EQ(whole.status, ReadStatus::kRead);
  EXPECT_GT(whole.bytes.size(), 500U);
  EXPECT_EQ(store_.Read(status.wstring(), 100).status, ReadStatus::kTooLarge);
}

TEST_F(FileStoreTest, ASocketInTheFilesPlaceIsRefused) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  Path("socket").native().copy(address.sun_path, sizeof address.sun_path - 1);
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(ReadStatusOf(Path("socket")), ReadStatus::kNotRegular);
  EXPECT_TRUE(Replace(Path("socket")));
  EXPECT_TRUE(fs::is_socket(Path("socket")));
  close(listener);
}

}  // namespace
}  // namespace qlx::platform
