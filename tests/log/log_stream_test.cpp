// The way of a record over real connections to a service that comes, goes and misbehaves.
#include <algorithm>

#include <gtest/gtest.h>

#include "log/LogDelivery.h"
#include "tests/support/LoopbackListener.h"

namespace qlx {
namespace {

using test::LoopbackListener;

class LogStreamTest : public testing::Test {
 protected:
  LogDelivery Delivery(std::uint16_t port) { return LogDelivery(port, &platform::MakeTcpSocket); }

  /// Delivers numbered records until the listener has a new connection; how many that took.
  static int DeliverUntilReconnected(LogDelivery& delivery, const LoopbackListener& listener) {
    int count = 0;
    do {
      delivery.Deliver("record " + std::to_string(++count) + "\r\n");
    } while (!listener.HasConnection(0) && count < 100);
    return count;
  }
};

TEST_F(LogStreamTest, RecordsArriveWholeAndInOrder) {
  const LoopbackListener listener;
  auto delivery = Delivery(listener.port());
  delivery.Deliver("one\r\n");
  delivery.Deliver("two\r\n");
  auto peer = listener.Accept();
  EXPECT_EQ(peer.ReadThrough("two\r\n"), "one\r\ntwo\r\n");
}

TEST_F(LogStreamTest, WithoutAServiceEveryRecordIsDroppedUntilItStarts) {
  const std::uint16_t port = test::FreePort();
  auto delivery = Delivery(port);
  for (int i = 0; i < 10; ++i) delivery.Deliver("dropped\r\n");
  const LoopbackListener late(port);
  delivery.Deliver("delivered\r\n");
  EXPECT_EQ(late.Accept().ReadThrough("\r\n"), "delivered\r\n");
}

TEST_F(LogStreamTest, AfterACloseInMidStreamAtMostTwoRecordsAreLost) {
  const LoopbackListener listener;
  auto delivery = Delivery(listener.port());
  delivery.Deliver("before\r\n");
  listener.Accept().Close();
  const int reconnected_at = DeliverUntilReconnected(delivery, listener);
  EXPECT_LE(reconnected_at, 3);
  EXPECT_EQ(listener.Accept().ReadThrough("\r\n"), "record " + std::to_string(reconnected_at) + "\r\n");
}

TEST_F(LogStreamTest, AfterAResetInMidStreamAtMostTwoRecordsAreLost) {
  const LoopbackListener listener;
  auto delivery = Delivery(listener.port());
  delivery.Deliver("before\r\n");
  listener.Accept().Reset();
  EXPECT_LE(DeliverUntilReconnected(delivery, listener), 3);
}

TEST_F(LogStreamTest, ARestartedServiceIsFoundAgain) {
  LoopbackListener first;
  auto delivery = Delivery(first.port());
  delivery.Deliver("before\r\n");
  first.Accept().Reset();
  first.Close();
  for (int i = 0; i < 5; ++i) delivery.Deliver("dropped\r\n");
  const LoopbackListener second(first.port());
  delivery.Deliver("after\r\n");
  EXPECT_EQ(second.Accept().ReadThrough("\r\n"), "after\r\n");
}

TEST_F(LogStreamTest, AServiceThatNeverReadsCostsARecordItsWaitAndTheConnection) {
  const LoopbackListener listener;
  auto delivery = Delivery(listener.port());
  delivery.Deliver("first\r\n");
  auto deaf = listener.Accept();
  const std::string record = std::string(7998, 'x') + "\r\n";
  while (!listener.HasConnection(0)) delivery.Deliver(record);
  // What was sent before the loss is whole, and the connection was ended.
  const std::string received = deaf.ReadAll();
  EXPECT_EQ(received.substr(0, 7), "first\r\n");
  EXPECT_EQ((received.size() - 7) % record.size(), 0U);
  EXPECT_EQ(listener.Accept().ReadThrough("\r\n"), record);
}

TEST_F(LogStreamTest, TheClientAnswersMinus11ToAServiceThatNeverReads) {
  const LoopbackListener listener;
  LogSocketClient client(listener.port(), platform::MakeTcpSocket());
  ASSERT_EQ(client.Connect(), 0);
  const auto deaf = listener.Accept();
  const std::string record(8000, 'x');
  std::int32_t answer = 0;
  do {
    answer = client.Send(record);
  } while (answer == 8000);
  EXPECT_EQ(answer, -11);
}

TEST_F(LogStreamTest, TheClientAnswersMinus5WhereNobodyListens) {
  LogSocketClient client(test::FreePort(), platform::MakeTcpSocket());
  EXPECT_EQ(client.Connect(), -5);
}

TEST_F(LogStreamTest, TheClientAnswersMinus7AndMinus6AfterAReset) {
  const LoopbackListener listener;
  LogSocketClient client(listener.port(), platform::MakeTcpSocket());
  ASSERT_EQ(client.Connect(), 0);
  listener.Accept().Reset();
  std::int32_t answer = 0;
  do {
    answer = client.Send("record");
  } while (answer == 6);
  EXPECT_EQ(answer, -7);
  EXPECT_EQ(client.Send("record"), -6);
}

}  // namespace
}  // namespace qlx
