// What the socket owes to signals and to child processes here.
#include <csignal>
#include <filesystem>

#include <fcntl.h>
#include <sys/time.h>

#include "tests/platform/TcpSocketTest.h"

namespace qlx::platform {
namespace {

using namespace std::chrono_literals;
using test::LoopbackListener;
using test::TcpSocketTest;

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

TEST_F(TcpSocketTest, ASignalDoesNotEndAConnectThatWaits) {
  const LoopbackListener listener(0, 0);
  const auto waiting = listener.FillQueue();
  const Interruptions interruptions;
  const int before = Interruptions::count;
  EXPECT_FALSE(ConnectTo(listener.port(), 200ms));
  EXPECT_GT(Interruptions::count, before + 1);
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
