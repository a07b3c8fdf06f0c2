#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "log/LogSocketClient.h"
#include "tests/log/fakes.h"

namespace qlx {
namespace {

using test::FakeSocket;
using test::SocketStory;
using testing::ElementsAre;

class LogSocketClientTest : public testing::Test {
 protected:
  LogSocketClient Client(std::uint32_t port = 38674) {
    return LogSocketClient(port, std::make_unique<FakeSocket>(story_));
  }

  /// What Connect and, after it, Send answer.
  std::pair<std::int32_t, std::int32_t> ConnectAndSend() {
    auto client = Client();
    const std::int32_t connected = client.Connect();
    story_.calls.clear();
    const std::int32_t sent = client.Send("12345");
    return {connected, sent};
  }

  SocketStory story_;
};

TEST_F(LogSocketClientTest, ConnectsStepByStepAndSendsAfterAWait) {
  {
    auto client = Client();
    EXPECT_EQ(client.Connect(), 0);
    EXPECT_EQ(client.Send("12345"), 5);
  }
  EXPECT_THAT(story_.calls, ElementsAre("start", "close", "resolve localhost", "create", "bind",
                                        "connect 3000 ms", "wait 3000000 us", "send", "close", "stop"));
  EXPECT_THAT(story_.sent, ElementsAre("12345"));
}

TEST_F(LogSocketClientTest, OfThePortTheLow16BitsCount) {
  Client(0x10000 + 80).Connect();
  EXPECT_EQ(story_.port, 80);
}

TEST_F(LogSocketClientTest, AnswersMinus1WhenTheLibraryDidNotStartAndStopsNothing) {
  story_.starts = false;
  EXPECT_EQ(ConnectAndSend(), std::make_pair(-1, -1));
  EXPECT_THAT(story_.calls, ElementsAre());
}

TEST_F(LogSocketClientTest, ConnectAnswersMinus2WithoutAnAddress) {
  story_.address.reset();
  EXPECT_EQ(ConnectAndSend(), std::make_pair(-2, -6));
}

TEST_F(LogSocketClientTest, ConnectAnswersMinus3WithoutASocket) {
  story_.creates = false;
  EXPECT_EQ(ConnectAndSend(), std::make_pair(-3, -6));
}

TEST_F(LogSocketClientTest, ConnectAnswersMinus4AndClosesWhenTheBindFails) {
  story_.binds = false;
  auto client = Client();
  EXPECT_EQ(client.Connect(), -4);
  EXPECT_EQ(story_.calls.back(), "close");
  EXPECT_EQ(client.Send("x"), -6);
}

TEST_F(LogSocketClientTest, ConnectAnswersMinus5AndClosesWhenTheServiceRefuses) {
  story_.connects = false;
  auto client = Client();
  EXPECT_EQ(client.Connect(), -5);
  EXPECT_EQ(story_.calls.back(), "close");
  EXPECT_EQ(client.Send("x"), -6);
}

TEST_F(LogSocketClientTest, SendAnswersMinus6BeforeAConnect) {
  EXPECT_EQ(Client().Send("x"), -6);
}

TEST_F(LogSocketClientTest, SendAnswersMinus11AfterTheTimeOutAndKeepsTheSocket) {
  auto client = Client();
  client.Connect();
  story_.calls.clear();
  story_.wait = platform::WaitEnd::kTimedOut;
  EXPECT_EQ(client.Send("x"), -11);
  EXPECT_THAT(story_.calls, ElementsAre("wait 3000000 us"));
  story_.wait = platform::WaitEnd::kReady;
  EXPECT_EQ(client.Send("x"), 1);
}

TEST_F(LogSocketClientTest, SendAnswersMinus12AndClosesWhenTheWaitFails) {
  auto client = Client();
  client.Connect();
  story_.wait = platform::WaitEnd::kFailed;
  EXPECT_EQ(client.Send("x"), -12);
  EXPECT_EQ(story_.calls.back(), "close");
  EXPECT_EQ(client.Send("x"), -6);
}

TEST_F(LogSocketClientTest, SendAnswersMinus7AndClosesWhenTheSendFails) {
  auto client = Client();
  client.Connect();
  story_.sends = false;
  EXPECT_EQ(client.Send("x"), -7);
  EXPECT_EQ(story_.calls.back(), "close");
  EXPECT_EQ(client.Send("x"), -6);
}

TEST_F(LogSocketClientTest, ASecondConnectClosesTheFirstSocket) {
  auto client = Client();
  client.Connect();
  story_.calls.clear();
  client.Connect();
  EXPECT_EQ(story_.calls.front(), "close");
}

}  // namespace
}  // namespace qlx
