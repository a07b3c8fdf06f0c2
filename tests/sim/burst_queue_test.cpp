#include <gmock/gmock.h>

#include "sim/BurstQueue.h"

namespace qlx::sim {
namespace {

using testing::ElementsAre;

class BurstQueueTest : public testing::Test {
 protected:
  /// Runs the loop until so many bursts have been sent.
  void RunUntil(std::size_t count) {
    while (sent_.size() < count) sd_event_run(loop_.handle(), UINT64_MAX);
  }

  EventLoop loop_;
  std::vector<std::string> sent_;
  BurstQueue queue_{loop_, [this](std::string_view bytes) { sent_.emplace_back(bytes); }};
};

TEST_F(BurstQueueTest, AnAnswerGoesAtOnce) {
  queue_.Add({"answer", {}, {}});
  EXPECT_THAT(sent_, ElementsAre("answer"));
}

TEST_F(BurstQueueTest, NoAnswerIsNotSent) {
  queue_.Add({});
  EXPECT_THAT(sent_, ElementsAre());
}

TEST_F(BurstQueueTest, ALaterBurstWaitsForThePause) {
  const auto begun = std::chrono::steady_clock::now();
  queue_.Add({"first", {"second", "third"}, {}});
  EXPECT_THAT(sent_, ElementsAre("first"));
  RunUntil(3);
  EXPECT_THAT(sent_, ElementsAre("first", "second", "third"));
  EXPECT_GE(std::chrono::steady_clock::now() - begun, 2 * BurstQueue::kPause);
}

TEST_F(BurstQueueTest, AnAnswerDuringAPauseKeepsItsPlace) {
  queue_.Add({"first", {"second"}, {}});
  queue_.Add({"other", {"rest"}, {}});
  RunUntil(4);
  EXPECT_THAT(sent_, ElementsAre("first", "second", "other", "rest"));
}

TEST_F(BurstQueueTest, OtherThingsHappenDuringAPause) {
  queue_.Add({"first", {"second"}, {}});
  const EventSource other =
      loop_.After(std::chrono::milliseconds(0), [this] { sent_.emplace_back("meanwhile"); });
  RunUntil(3);
  EXPECT_THAT(sent_, ElementsAre("first", "meanwhile", "second"));
}

TEST_F(BurstQueueTest, WhatIsForgottenIsNotSent) {
  queue_.Add({"first", {"second"}, {}});
  queue_.Clear();
  queue_.Add({"other", {"rest"}, {}});
  RunUntil(3);
  EXPECT_THAT(sent_, ElementsAre("first", "other", "rest"));
}

}  // namespace
}  // namespace qlx::sim
