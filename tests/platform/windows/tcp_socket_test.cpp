// What the socket owes to the socket library and to child processes here.
#include <winsock2.h>

#include "tests/platform/TcpSocketTest.h"

namespace qlx::platform {
namespace {

using test::TcpSocketTest;

/// How many starts of the library this process has not yet ended.
int OpenStarts() {
  int starts = 0;
  while (WSACleanup() == 0) ++starts;
  WSADATA granted{};
  for (int i = 0; i < starts; ++i) WSAStartup(MAKEWORD(2, 2), &granted);
  return starts;
}

TEST_F(TcpSocketTest, StartStartsTheLibraryAndStopEndsIt) {
  const int before = OpenStarts();
  ASSERT_TRUE(socket_->Start());
  EXPECT_EQ(OpenStarts(), before + 1);
  socket_->Stop();
  EXPECT_EQ(OpenStarts(), before);
}

TEST_F(TcpSocketTest, WithoutAStartThereIsNeitherAnAddressNorASocket) {
  while (WSACleanup() == 0) {
  }
  EXPECT_EQ(socket_->Resolve("localhost"), std::nullopt);
  EXPECT_FALSE(socket_->Create());
}

bool IsSocket(SOCKET number) {
  int type = 0;
  int size = sizeof type;
  return getsockopt(number, SOL_SOCKET, SO_TYPE, reinterpret_cast<char*>(&type), &size) == 0;
}

TEST_F(TcpSocketTest, NoChildProcessInheritsIt) {
  ASSERT_TRUE(socket_->Start());
  ASSERT_TRUE(socket_->Create());
  int sockets = 0;
  for (SOCKET number = 4; number < 4096; number += 4) {
    if (!IsSocket(number)) continue;
    ++sockets;
    DWORD flags = 0;
    ASSERT_TRUE(GetHandleInformation(reinterpret_cast<HANDLE>(number), &flags));
    EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0U);
  }
  EXPECT_EQ(sockets, 1);
}

}  // namespace
}  // namespace qlx::platform
