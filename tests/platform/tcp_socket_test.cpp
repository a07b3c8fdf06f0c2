#include <optional>

#include "tests/platform/TcpSocketTest.h"

namespace qlx::platform {
namespace {

using namespace std::chrono_literals;
using test::kLoopback;
using test::LoopbackListener;
using test::TcpSocketTest;

TEST_F(TcpSocketTest, CarriesBytesToAListener) {
  const LoopbackListener listener;
  ASSERT_TRUE(ConnectTo(listener.port()));
  EXPECT_EQ(socket_->WaitWritable(1s), WaitEnd::kReady);
  EXPECT_TRUE(socket_->Send("bytes\r\n"));
  EXPECT_EQ(listener.Accept().ReadThrough("\r\n"), "bytes\r\n");
}

TEST_F(TcpSocketTest, LocalhostIsTheIpv4LoopbackAddress) {
  ASSERT_TRUE(socket_->Start());
  EXPECT_EQ(socket_->Resolve("localhost"), kLoopback);
}

TEST_F(TcpSocketTest, AHostThatDoesNotExistHasNoAddress) {
  ASSERT_TRUE(socket_->Start());
  EXPECT_EQ(socket_->Resolve("no such host"), std::nullopt);
}

TEST_F(TcpSocketTest, APortWithoutAListenerRefuses) {
  EXPECT_FALSE(ConnectTo(test::FreePort()));
}

TEST_F(TcpSocketTest, AListenerThatNeverAcceptsCannotHoldTheCaller) {
  const LoopbackListener listener(0, 0);
  const auto waiting = listener.FillQueue();
  EXPECT_FALSE(ConnectTo(listener.port(), 100ms));
}

TEST_F(TcpSocketTest, APeerThatNeverReadsEndsTheWaitByTimeOut) {
  const LoopbackListener listener;
  ASSERT_TRUE(ConnectTo(listener.port()));
  const auto peer = listener.Accept();
  EXPECT_EQ(FillUp(50ms), WaitEnd::kTimedOut);
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

}  // namespace
}  // namespace qlx::platform
