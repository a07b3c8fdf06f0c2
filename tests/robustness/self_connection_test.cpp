// A client whose own port, by the system's choice, is the one that it calls.
#include <algorithm>
#include <cstring>

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/tcp_socket.h"
#include "tests/support/LoopbackListener.h"

namespace {

/// What the system gives to who asks for any port; 0 leaves the choice to it.
in_port_t given_port = 0;

}  // namespace

// In front of the C library's, which gives such a port only once in ten thousand times.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int bind(int socket, const sockaddr* wanted, socklen_t size) noexcept {
  sockaddr_in address{};
  std::memcpy(&address, wanted, std::min<std::size_t>(size, sizeof address));
  if (address.sin_port == 0) address.sin_port = given_port;
  return static_cast<int>(syscall(SYS_bind, socket, &address, size));
}

namespace qlx::platform {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t kLoopback = 0x7F000001;

class SelfConnection : public testing::Test {
 protected:
  ~SelfConnection() override { given_port = 0; }

  /// Calls `port` from the same port.
  bool ConnectToItself(std::uint16_t port) {
    given_port = htons(port);
    return socket_->Create() && socket_->BindToAny() && socket_->Connect(kLoopback, port, 10s);
  }

  std::unique_ptr<TcpSocket> socket_ = MakeTcpSocket();
};

TEST_F(SelfConnection, ASocketThatMeetsItselfHasFoundNoService) {
  EXPECT_FALSE(ConnectToItself(test::FreePort()));
}

TEST_F(SelfConnection, TheServiceCanHaveThePortAfterwards) {
  const std::uint16_t port = test::FreePort();
  ConnectToItself(port);
  socket_->Close();
  const int service = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const sockaddr_in address = {AF_INET, htons(port), {htonl(kLoopback)}, {}};
  EXPECT_EQ(bind(service, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  close(service);
}

}  // namespace
}  // namespace qlx::platform
