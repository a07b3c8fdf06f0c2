// A client's socket and what a test does with it.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/tcp_socket.h"
#include "tests/support/LoopbackListener.h"

namespace qlx::test {

inline constexpr std::uint32_t kLoopback = 0x7F000001;

class TcpSocketTest : public testing::Test {
 protected:
  bool ConnectTo(std::uint16_t port, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    return socket_->Start() && socket_->Create() && socket_->BindToAny() &&
           socket_->Connect(kLoopback, port, limit);
  }

  /// Sends until the peer's and our buffers are full, and answers what ended it.
  platform::WaitEnd FillUp(std::chrono::microseconds limit) {
    const std::string piece(65536, 'x');
    platform::WaitEnd end = platform::WaitEnd::kReady;
    while ((end = socket_->WaitWritable(limit)) == platform::WaitEnd::kReady)
      if (!socket_->Send(piece)) return platform::WaitEnd::kFailed;
    return end;
  }

  std::unique_ptr<platform::TcpSocket> socket_ = platform::MakeTcpSocket();
};

}  // namespace qlx::test
