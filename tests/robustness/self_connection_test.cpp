// A client whose own port, by the system's choice, is the one that it calls.
#include <gtest/gtest.h>

#include "platform/tcp_socket.h"
#include "tests/robustness/given_port.h"
#include "tests/support/LoopbackListener.h"

namespace qlx::platform {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t kLoopback = 0x7F000001;

class SelfConnection : public testing::Test {
 protected:
  SelfConnection() { socket_->Start(); }
  ~SelfConnection() override {
    test::GivePort(0);
    socket_->Close();
    socket_->Stop();
  }

  /// Calls `port` from the same port.
  bool ConnectToItself(std::uint16_t port) {
    test::GivePort(port);
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
  EXPECT_NO_THROW(test::LoopbackListener{port});
}

}  // namespace
}  // namespace qlx::platform
