#include "serial/SerialLink.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "tests/support/FakeSerialPort.h"

namespace qlx {
namespace {

using platform::IoStart;
using platform::IoWait;
using platform::SerialOpenError;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::SerialScript;
using testing::WriteScript;

constexpr std::uint8_t kAbc[] = {'a', 'b', 'c'};

class LinkOnAScript : public ::testing::Test {
 protected:
  std::optional<SerialOpenError> Open() { return link_.Open(L"COM5"); }

  /// What the reader has told once it has gone through the script and waits in the read after it.
  std::vector<std::string> ReadAll() {
    const auto reads = static_cast<int>(script_->reads.size());
    Open();
    script_->AwaitRead(reads + 1);
    link_.Close();
    return told_;
  }

  WriteEnd Write(WriteScript write) {
    Open();
    script_->writes.push_back(std::move(write));
    return link_.Write(kAbc);
  }

  std::shared_ptr<SerialScript> script_ = std::make_shared<SerialScript>();
  SerialOpenError refusal_ = {};
  bool refuses_ = false;
  std::wstring asked_;
  platform::SerialTimeouts timeouts_{};
  std::vector<std::string> told_;
  int error_ = -1;
  int idle_calls_ = 0;
  SerialLink link_{
      [this](const std::wstring& name, const platform::SerialTimeouts& timeouts) -> platform::SerialOpening {
        asked_ = name;
        timeouts_ = timeouts;
        if (refuses_) return {nullptr, refusal_};
        return {std::make_unique<testing::FakeSerialPort>(script_), {}};
      },
      {[this](std::span<const std::uint8_t> block) { told_.emplace_back(block.begin(), block.end()); },
       [this](ReadFailure failure, int error) {
         told_.emplace_back(failure == ReadFailure::kAtStart ? "<start>" : "<wait>");
         error_ = error;
       }},
      [this] { ++idle_calls_; }};
};

TEST_F(LinkOnAScript, OpensTheNamedPortWithTimeoutsOfOneMillisecond) {
  EXPECT_FALSE(Open());
  EXPECT_EQ(asked_, L"COM5");
  EXPECT_EQ(timeouts_.interval.count(), 1);
  EXPECT_EQ(timeouts_.total_multiplier.count(), 1);
  EXPECT_EQ(timeouts_.total_constant.count(), 1);
}

TEST_F(LinkOnAScript, TellsWhyAPortCannotBeOpened) {
  refuses_ = true;
  refusal_ = SerialOpenError::kStopEvent;
  EXPECT_EQ(Open(), SerialOpenError::kStopEvent);
}

TEST_F(LinkOnAScript, TellsTheErrorNumberOfAReadThatFailedWhileItWasWaitedFor) {
  script_->reads = {{.error = 995}};
  EXPECT_THAT(ReadAll(), ElementsAre("<wait>"));
  EXPECT_EQ(error_, 995);
}

TEST_F(LinkOnAScript, HandsOverOneBlockARead) {
  script_->reads = {{.bytes = "one"}, {.bytes = "two"}, {}};
  EXPECT_THAT(ReadAll(), ElementsAre("one", "two", "<wait>"));
}

TEST_F(LinkOnAScript, StartsEveryReadWithABufferOfZeros) {
  script_->reads = {{.bytes = std::string(2048, 'x')}, {.bytes = "y"}, {.bytes = ""}};
  ReadAll();
  EXPECT_FALSE(script_->dirty_buffer);
}

TEST_F(LinkOnAScript, WaitsThreeSecondsForARead) {
  script_->reads = {{.bytes = "one"}};
  ReadAll();
  EXPECT_THAT(script_->Calls(), Contains("wait read 3000"));
}

TEST_F(LinkOnAScript, AReadThatCannotStartIsTheReadersLast) {
  script_->reads = {{.start = IoStart::kFailed}, {.bytes = "never"}};
  Open();
  script_->AwaitRead(1);
  link_.Close();
  EXPECT_THAT(told_, ElementsAre("<start>"));
  EXPECT_EQ(script_->read_starts, 1);
}

TEST_F(LinkOnAScript, AReadThatFailsWhileWaitedForIsFollowedByTheNext) {
  script_->reads = {{.wait = IoWait::kEnded}, {.bytes = "next"}};
  EXPECT_THAT(ReadAll(), ElementsAre("<wait>", "next"));
  EXPECT_EQ(std::ranges::count(script_->Calls(), "cancel read"), 1) << "the stop's";
}

TEST_F(LinkOnAScript, AReadThatCompletesAtOnceIsShownAndIsTheReadersLast) {
  script_->reads = {{.start = IoStart::kCompleted, .bytes = "last"}, {.bytes = "never"}};
  Open();
  script_->AwaitRead(1);
  link_.Close();
  EXPECT_THAT(told_, ElementsAre("last"));
  EXPECT_EQ(script_->read_starts, 1);
}

TEST_F(LinkOnAScript, AReadWithoutResultAtTheTimeOutFailsAndIsCancelled) {
  script_->reads = {{.wait = IoWait::kTimedOut}, {.bytes = "next"}};
  EXPECT_THAT(ReadAll(), ElementsAre("<wait>", "next"));
  EXPECT_EQ(std::ranges::count(script_->Calls(), "cancel read"), 2) << "the time-out's and the stop's";
}

TEST_F(LinkOnAScript, AReadWithAResultAtTheTimeOutIsHandedOver) {
  script_->reads = {{.wait = IoWait::kTimedOut, .bytes = "late"}};
  EXPECT_THAT(ReadAll(), ElementsAre("late"));
}

TEST_F(LinkOnAScript, AWaitThatFailsIsFollowedByTheNextRead) {
  script_->reads = {{.wait = IoWait::kFailed, .bytes = "lost"}, {.bytes = "next"}};
  EXPECT_THAT(ReadAll(), ElementsAre("next"));
}

TEST_F(LinkOnAScript, TheStopCancelsThePendingReadAndTellsNothing) {
  Open();
  script_->AwaitRead(1);
  link_.Close();
  EXPECT_THAT(told_, IsEmpty());
  EXPECT_THAT(script_->Calls(), ElementsAre("wait read 3000", "cancel read"));
  EXPECT_TRUE(script_->closed);
}

TEST_F(LinkOnAScript, AWriteThatCompletesAtOnceIsNotWaitedFor) {
  EXPECT_EQ(Write({.start = IoStart::kCompleted, .result = false}), WriteEnd::kWritten);
  EXPECT_THAT(script_->written, ElementsAre("abc"));
}

TEST_F(LinkOnAScript, AWriteThatCannotStartFails) {
  EXPECT_EQ(Write({.start = IoStart::kFailed}), WriteEnd::kFailed);
}

TEST_F(LinkOnAScript, APendingWriteIsWaitedFor) {
  EXPECT_EQ(Write({.start = IoStart::kPending, .waits = {IoWait::kTimedOut, IoWait::kEnded}}),
            WriteEnd::kWritten);
  EXPECT_EQ(idle_calls_, 1);
}

TEST_F(LinkOnAScript, APendingWriteThatEndsBadlyFails) {
  EXPECT_EQ(Write({.start = IoStart::kPending, .waits = {IoWait::kEnded}, .result = false}),
            WriteEnd::kFailed);
}

TEST_F(LinkOnAScript, APendingWriteFailsAfterOneSecondAndIsCancelled) {
  EXPECT_EQ(Write({.start = IoStart::kPending, .waits = {IoWait::kTimedOut}, .result = false}),
            WriteEnd::kFailed);
  EXPECT_EQ(std::ranges::count(script_->Calls(), "wait write 10"), 100);
  EXPECT_THAT(script_->Calls(), Contains("cancel write"));
  EXPECT_EQ(idle_calls_, 99) << "once after each slice but the last";
}

TEST_F(LinkOnAScript, AWriteWithAResultAtTheTimeOutIsWritten) {
  EXPECT_EQ(Write({.start = IoStart::kPending, .waits = {IoWait::kTimedOut}}), WriteEnd::kWritten);
  EXPECT_THAT(script_->Calls(), Not(Contains("cancel write")));
}

TEST_F(LinkOnAScript, TheStopAbandonsAPendingWrite) {
  EXPECT_EQ(Write({.start = IoStart::kPending, .waits = {IoWait::kStopped}}), WriteEnd::kAbandoned);
  EXPECT_THAT(script_->Calls(), Contains("cancel write"));
}

TEST_F(LinkOnAScript, AWaitThatFailsAbandonsTheWriteWithoutAWord) {
  EXPECT_EQ(Write({.start = IoStart::kPending, .waits = {IoWait::kFailed}, .result = false}),
            WriteEnd::kAbandoned);
}

TEST_F(LinkOnAScript, NothingIsWrittenWithoutAnOpenPort) {
  EXPECT_EQ(link_.Write(kAbc), WriteEnd::kAbandoned);
  Open();
  link_.Close();
  EXPECT_EQ(link_.Write(kAbc), WriteEnd::kAbandoned);
}

TEST_F(LinkOnAScript, ClosingTwiceIsClosingOnce) {
  Open();
  link_.Close();
  link_.Close();
  EXPECT_TRUE(script_->closed);
}

}  // namespace
}  // namespace qlx
