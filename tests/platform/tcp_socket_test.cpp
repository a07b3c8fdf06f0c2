#include "platform/tcp_socket.h"

#include <csignal>
#include <filesystem>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/time.h>

#include "tests/platform/LoopbackListener.h"

namespace qlx::platform {
namespace {

using namespace std::chrono_literals;
using test::Descriptor;
using test::LoopbackListener;

constexpr std::uint32_t kLoopback = 0x7F000001;

class TcpSocketTest : public testing::Test {
 protected:
  bool ConnectTo(std::uint16_t port, std::chrono::milliseconds limit = 10s) {
    return socket_->Start() && socket_->Create() && socket_->BindToAny() &&
           socket_->Connect(kLoopback, port, limit);
  }

  /// Sends until the peer's and our buffers are full, and answers what ended it.
  WaitEnd FillUp(std::chrono::microseconds limit) {
    const std::string piece(1000, 'x');
    WaitEnd end = WaitEnd::kReady;
    while ((end = socket_->WaitWritable(limit)) == WaitEnd::kReady)
      if (!socket_->Send(piece)) return WaitEnd::kFailed;
    return end;
  }

  std::unique_ptr<TcpSocket> socket_ = MakeTcpSocket();
};

/// A signal every few milliseconds that interrupts every call.
class Interruptions {
 public:
  Interruptions() {
    struct sigaction action {};
    action.sa_handler = [](int) { count = count + 1; };
    sigaction(SIGALRM, &action, &before_);
    Every(5000);
  }
  Interruptions(const Interruptions&) = delete;
  Interruptions& operator=(const Interruptions&) = delete;
  ~Interruptions() {
    Every(0);
    sigaction(SIGALRM, &before_, nullptr);
  }

  inline static volatile std::sig_atomic_t count = 0;

 private:
  static void Every(suseconds_t microseconds) {
    const itimerval timer{{0, microseconds}, {0, microseconds}};
    setitimer(ITIMER_REAL, &timer, nullptr);
  }

  struct sigaction before_ {};
};

/// Connections that fill a listener's queue, so that the next one is neither accepted nor refused.
std::vector<Descriptor> FillQueue(const LoopbackListener& listener) {
  std::vector<Descriptor> waiting;
  const sockaddr_in address = LoopbackListener::Address(listener.port());
  for (bool full = false; !full;) {
    const int one = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    waiting.emplace_back(one);
    // In progress or refused: poll says which.
    (void)connect(one, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    pollfd wait{one, POLLOUT, 0};
    full = poll(&wait, 1, 200) == 0;
  }
  return waiting;
}

TEST_F(TcpSocketTest, CarriesBytesToAListener) {
  const LoopbackListener listener;
  ASSERT_TRUE(ConnectTo(listener.port()));
  EXPECT_EQ(socket_->WaitWritable(1s), WaitEnd::kReady);
  EXPECT_TRUE(socket_->Send("bytes\r\n"));
  EXPECT_EQ(listener.Accept().ReadThrough("\r\n"), "bytes\r\n");
}

TEST_F(TcpSocketTest, LocalhostIsTheIpv4LoopbackAddress) {
  EXPECT_EQ(socket_->Resolve("localhost"), kLoopback);
}

TEST_F(TcpSocketTest, AHostThatDoesNotExistHasNoAddress) {
  EXPECT_EQ(socket_->Resolve("no such host"), std::nullopt);
}

TEST_F(TcpSocketTest, APortWithoutAListenerRefuses) {
  EXPECT_FALSE(ConnectTo(test::FreePort()));
}

TEST_F(TcpSocketTest, AListenerThatNeverAcceptsCannotHoldTheCaller) {
  const LoopbackListener listener(0, 0);
  const auto waiting = FillQueue(listener);
  EXPECT_FALSE(ConnectTo(listener.port(), 100ms));
}

TEST_F(TcpSocketTest, ASignalDoesNotEndAConnectThatWaits) {
  const LoopbackListener listener(0, 0);
  const auto waiting = FillQueue(listener);
  const Interruptions interruptions;
  const int before = Interruptions::count;
  EXPECT_FALSE(ConnectTo(listener.port(), 200ms));
  EXPECT_GT(Interruptions::count, before + 1);
}

TEST_F(TcpSocketTest, APeerThatNeverReadsEndsTheWaitByTimeOut) {
  const LoopbackListener listener;
  ASSERT_TRUE(ConnectTo(listener.port()));
  const auto peer = listener.Accept();
  EXPECT_EQ(FillUp(50ms), WaitEnd::kTimedOut);
}

TEST_F(TcpSocketTest, ASignalDoesNotEndTheWait) {
  const LoopbackListener listener;
  ASSERT_TRUE(ConnectTo(listener.port()));
  const auto peer = listener.Accept();
  const Interruptions interruptions;
  const int before = Interruptions::count;
  EXPECT_EQ(FillUp(200ms), WaitEnd::kTimedOut);
  EXPECT_GT(Interruptions::count, before + 1);
}

TEST_F(TcpSocketTest, WritingToAClosedPeerFailsWithoutASignal) {
  const LoopbackListener listener;
  ASSERT_TRUE(ConnectTo(listener.port()));
  listener.Accept().Close();
  EXPECT_EQ(FillUp(1s), WaitEnd::kFailed);
}

TEST_F(TcpSocketTest, WritingAfterAResetFailsWithoutASignal) {
  const LoopbackListener listener;
  ASSERT_TRUE(ConnectTo(listener.port()));
  listener.Accept().Reset();
  EXPECT_EQ(FillUp(1s), WaitEnd::kFailed);
  EXPECT_FALSE(socket_->Send("again"));
}

TEST_F(TcpSocketTest, OperationsOnAClosedSocketFail) {
  const LoopbackListener listener;
  ASSERT_TRUE(ConnectTo(listener.port()));
  socket_->Close();
  EXPECT_FALSE(socket_->BindToAny());
  EXPECT_FALSE(socket_->Connect(kLoopback, listener.port(), 1s));
  EXPECT_FALSE(socket_->Send("x"));
}

TEST_F(TcpSocketTest, CloseEndsTheConnectionAndMayBeRepeated) {
  const LoopbackListener listener;
  ASSERT_TRUE(ConnectTo(listener.port()));
  auto peer = listener.Accept();
  socket_->Close();
  socket_->Close();
  EXPECT_EQ(peer.ReadAll(), "");
}

TEST_F(TcpSocketTest, NoChildProcessInheritsIt) {
  ASSERT_TRUE(socket_->Create());
  int sockets = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (!std::filesystem::read_symlink(entry, gone).native().starts_with("socket:")) continue;
    ++sockets;
    EXPECT_NE(fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC, 0);
  }
  EXPECT_EQ(sockets, 1);
}

}  // namespace
}  // namespace qlx::platform
