#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "log/LogDelivery.h"
#include "tests/log/fakes.h"

namespace qlx {
namespace {

using platform::WaitEnd;
using testing::ElementsAre;

class LogDeliveryTest : public testing::Test {
 protected:
  test::SocketStory story_;
  LogDelivery delivery_{38674, test::SocketsOf(story_)};
};

TEST_F(LogDeliveryTest, NothingIsConnectedBeforeTheFirstRecord) {
  EXPECT_EQ(story_.made, 0);
}

TEST_F(LogDeliveryTest, OneConnectionCarriesAllRecords) {
  for (const char* record : {"one", "two", "three"}) delivery_.Deliver(record);
  EXPECT_THAT(story_.sent, ElementsAre("one", "two", "three"));
  EXPECT_EQ(story_.made, 1);
  EXPECT_EQ(story_.port, 38674);
}

TEST_F(LogDeliveryTest, ARecordThatFindsNoServiceIsLostAndTheNextOneTriesAgain) {
  story_.connects = false;
  delivery_.Deliver("lost");
  EXPECT_EQ(story_.alive, 0);
  story_.connects = true;
  delivery_.Deliver("kept");
  EXPECT_THAT(story_.sent, ElementsAre("kept"));
  EXPECT_EQ(story_.made, 2);
}

TEST_F(LogDeliveryTest, AFailedSendLosesItsRecordAndTheConnection) {
  delivery_.Deliver("one");
  story_.sends = false;
  delivery_.Deliver("lost");
  EXPECT_EQ(story_.alive, 0);
  story_.sends = true;
  delivery_.Deliver("two");
  EXPECT_THAT(story_.sent, ElementsAre("one", "two"));
}

TEST_F(LogDeliveryTest, ATimeOutLosesItsRecordAndTheConnection) {
  story_.wait = WaitEnd::kTimedOut;
  delivery_.Deliver("lost");
  EXPECT_EQ(story_.alive, 0);
  EXPECT_EQ(story_.calls.back(), "stop");
}

TEST_F(LogDeliveryTest, AFailedWaitLosesItsRecordAndTheConnection) {
  story_.wait = WaitEnd::kFailed;
  delivery_.Deliver("lost");
  EXPECT_EQ(story_.alive, 0);
}

TEST_F(LogDeliveryTest, ARecordIsDroppedWhenThereIsNoMemoryForASocket) {
  LogDelivery delivery(38674, [] { return nullptr; });
  delivery.Deliver("lost");
  EXPECT_EQ(story_.made, 0);
}

}  // namespace
}  // namespace qlx
