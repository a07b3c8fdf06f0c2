#include "demo/SerialSession.h"

#include <thread>

#include <gmock/gmock.h>

#include "tests/support/FakeSerialPort.h"

namespace qlx {
namespace {

using platform::IoStart;
using platform::IoWait;
using platform::SerialOpenError;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::SerialScript;

class SessionOnAScript : public ::testing::Test {
 protected:
  /// Waits until `count` events were taken; a block shows as its bytes in brackets.
  std::vector<std::wstring> Await(std::size_t count) {
    while (shown_.size() < count) {
      wakes_.Await();
      Collect();
    }
    return shown_;
  }

  std::vector<std::wstring> CloseAndCollect() {
    session_.Close();
    Collect();
    return shown_;
  }

  void Collect() {
    for (const SessionEvent& event : session_.Take(1 << 20)) {
      if (const auto* line = std::get_if<std::wstring>(&event)) {
        shown_.push_back(*line);
      } else {
        const auto& block = std::get<std::vector<std::uint8_t>>(event);
        shown_.push_back(L"[" + std::wstring(block.begin(), block.end()) + L"]");
      }
    }
  }

  struct Wakes {
    std::mutex lock;
    std::condition_variable changed;
    int count = 0;
    void Add() {
      const std::lock_guard guard(lock);
      ++count;
      changed.notify_all();
    }
    void Await() {
      std::unique_lock guard(lock);
      changed.wait(guard, [this] { return count > 0; });
      --count;
    }
  };

  std::shared_ptr<SerialScript> script_ = std::make_shared<SerialScript>();
  std::optional<SerialOpenError> refusal_;
  int openings_ = 0;
  Wakes wakes_;
  std::vector<std::wstring> shown_;
  SerialSession session_{
      [this](const std::wstring&, const platform::SerialTimeouts&) -> platform::SerialOpening {
        ++openings_;
        if (refusal_) return {nullptr, *refusal_};
        return {std::make_unique<testing::FakeSerialPort>(script_), {}};
      },
      [this] { wakes_.Add(); }};
};

TEST_F(SessionOnAScript, SaysThatThePortIsOpen) {
  EXPECT_TRUE(session_.Open(L"COM5"));
  EXPECT_THAT(Await(1), ElementsAre(L"<COM Port Opened>"));
}

TEST_F(SessionOnAScript, AnEmptyPortNameIsAnOpeningErrorWithoutATry) {
  EXPECT_FALSE(session_.Open(L""));
  EXPECT_THAT(Await(1), ElementsAre(L"<Error Opening COM Port>"));
  EXPECT_EQ(openings_, 0);
}

TEST_F(SessionOnAScript, EachStepOfTheOpeningHasItsLineAndTheStopEventTheWriteEvents) {
  const std::pair<SerialOpenError, const wchar_t*> steps[] = {
      {SerialOpenError::kReadEvent, L"<Error Creating Read Event>"},
      {SerialOpenError::kWriteEvent, L"<Error Creating Write Event>"},
      {SerialOpenError::kStopEvent, L"<Error Creating Write Event>"},
      {SerialOpenError::kDevice, L"<Error Opening COM Port>"},
      {SerialOpenError::kTimeouts, L"<Error Opening COM Port>"},
  };
  for (const auto& [step, line] : steps) {
    refusal_ = step;
    EXPECT_FALSE(session_.Open(L"COM5"));
    EXPECT_EQ(Await(shown_.size() + 1).back(), line);
  }
}

TEST_F(SessionOnAScript, WhatIsReceivedComesAfterTheOpeningLineAndInOrder) {
  script_->reads = {{.bytes = "one"}, {.bytes = ""}, {.bytes = "two"}};
  session_.Open(L"COM5");
  EXPECT_THAT(Await(3), ElementsAre(L"<COM Port Opened>", L"[one]", L"[two]"));
}

TEST_F(SessionOnAScript, AReadErrorIsALine) {
  script_->reads = {{.bytes = "one"}, {.start = IoStart::kFailed}};
  session_.Open(L"COM5");
  EXPECT_THAT(Await(3), ElementsAre(L"<COM Port Opened>", L"[one]", L"<Error Reading Port>"));
  EXPECT_THAT(CloseAndCollect().size(), 3U) << "once, not in a loop";
}

TEST_F(SessionOnAScript, SendsTheReceiptInSeventeenWrites) {
  session_.Open(L"COM5");
  session_.Send(FirstDemoCommand(kPrinter));
  const auto chunks = FirstDemoCommand(kPrinter).chunks;
  EXPECT_EQ(script_->written, std::vector<std::string>(chunks.begin(), chunks.end()));
  EXPECT_EQ(script_->written.size(), 17U);
}

TEST_F(SessionOnAScript, AnnouncesBeforeItWrites) {
  session_.Open(L"COM5");
  script_->writes = {{.start = IoStart::kFailed}};
  session_.Send(FirstDemoCommand(kLineDisplay));
  EXPECT_THAT(Await(3), ElementsAre(L"<COM Port Opened>", L"<Sending \"HARLUNE TEST<LF><CR>0123456789\">",
                                    L"<Error Writing to Port>"));
}

TEST_F(SessionOnAScript, AChunkThatFailsIsALineAndTheNextOneIsTried) {
  session_.Open(L"COM5");
  script_->writes = {{.start = IoStart::kFailed}, {}, {.start = IoStart::kFailed}};
  session_.Send(FirstDemoCommand(kPrinter));
  EXPECT_THAT(Await(3),
              ElementsAre(L"<COM Port Opened>", L"<Error Writing to Port>", L"<Error Writing to Port>"));
  EXPECT_EQ(script_->written.size(), 17U);
}

TEST_F(SessionOnAScript, AStopDuringASendLeavesTheRestWithoutALine) {
  session_.Open(L"COM5");
  session_.Stop();
  script_->writes = {{.start = IoStart::kPending, .waits = {IoWait::kStopped}}};
  session_.Send(FirstDemoCommand(kPrinter));
  EXPECT_THAT(script_->written, IsEmpty());
  EXPECT_THAT(CloseAndCollect(), ElementsAre(L"<COM Port Opened>"));
}

TEST_F(SessionOnAScript, AReaderFarAheadWaitsAndLosesNothing) {
  for (int i = 0; i < 1000; ++i) script_->reads.push_back({.bytes = std::to_string(i)});
  session_.Open(L"COM5");
  script_->AwaitRead(200);
  std::size_t most = 0;
  while (shown_.size() < 1001) {
    wakes_.Await();
    const std::size_t before = shown_.size();
    Collect();
    most = std::max(most, shown_.size() - before);
  }
  EXPECT_LE(most, 257U);
  EXPECT_EQ(shown_[1000], L"[999]");
}

TEST_F(SessionOnAScript, ClosingEndsAReaderThatWaitsForRoom) {
  for (int i = 0; i < 1000; ++i) script_->reads.push_back({.bytes = "x"});
  session_.Open(L"COM5");
  script_->AwaitRead(200);
  session_.Close();
  EXPECT_TRUE(script_->closed);
}

TEST_F(SessionOnAScript, WakesOnceForManyEventsThatNobodyHasTaken) {
  session_.Open(L"");
  session_.Open(L"");
  session_.Open(L"");
  EXPECT_EQ(wakes_.count, 1);
  EXPECT_EQ(session_.Take(1 << 20).size(), 3U);
}

TEST_F(SessionOnAScript, IsTakenInPortionsOfAboutTheSizeAskedFor) {
  script_->reads = {{.bytes = std::string(100, 'a')}, {.bytes = std::string(100, 'b')}, {.bytes = "c"}};
  session_.Open(L"COM5");
  script_->AwaitRead(4);
  EXPECT_EQ(session_.Take(1).size(), 1U) << "at least one";
  EXPECT_EQ(session_.Take(101).size(), 2U) << "the last one whole";
  EXPECT_EQ(session_.Take(101).size(), 1U);
  EXPECT_EQ(session_.Take(101).size(), 0U);
}

TEST_F(SessionOnAScript, AfterClosingNothingIsSent) {
  session_.Open(L"COM5");
  session_.Close();
  session_.Send(FirstDemoCommand(kPrinter));
  EXPECT_THAT(script_->written, IsEmpty());
}

}  // namespace
}  // namespace qlx
