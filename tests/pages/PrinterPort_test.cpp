#include "pages/PrinterPort.h"

#include <atomic>

#include <gmock/gmock.h>

#include "pages/PrinterAnswers.h"
#include "tests/support/FakeSerialPort.h"

namespace qlx {
namespace {

using platform::SerialOpenError;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::SerialScript;

class PortOnAScript : public ::testing::Test {
 protected:
  std::vector<std::string> Taken() {
    std::vector<std::string> blocks;
    for (const auto& block : port_.TakeBlocks()) blocks.emplace_back(block.begin(), block.end());
    return blocks;
  }

  /// Opens the port and waits until the reader has gone through the script.
  void ReadAll() {
    const auto reads = static_cast<int>(script_->reads.size());
    ASSERT_TRUE(port_.Open(L"COM8"));
    script_->AwaitRead(reads + 1);
  }

  std::shared_ptr<SerialScript> script_ = std::make_shared<SerialScript>();
  std::optional<SerialOpenError> refusal_;
  int opened_ = 0;
  std::vector<std::string> log_;
  std::atomic<int> wakes_ = 0;
  PrinterPort port_{[this](const std::wstring&, const platform::SerialTimeouts&) -> platform::SerialOpening {
                      ++opened_;
                      if (refusal_) return {nullptr, *refusal_};
                      return {std::make_unique<testing::FakeSerialPort>(script_), {}};
                    },
                    {[this](std::uint32_t level, const std::string& line) {
                       const std::lock_guard guard(script_->lock);
                       log_.push_back(std::to_string(level) + " " + line);
                     },
                     {}},
                    [this] { ++wakes_; }};
};

TEST_F(PortOnAScript, APortWithoutANameIsNotOpened) {
  EXPECT_FALSE(port_.Open(L""));
  EXPECT_EQ(opened_, 0);
  EXPECT_THAT(log_, ElementsAre("1 PRINTERDialog::OpenPort - COM Port string is empty"));
}

TEST_F(PortOnAScript, AnOpenedPortIsLogged) {
  EXPECT_TRUE(port_.Open(L"COM8"));
  EXPECT_THAT(log_, ElementsAre("3 PRINTERDialog::OpenPort - COM Port Opened"));
}

TEST_F(PortOnAScript, APortThatCannotBeOpenedStaysClosedAndTheLogTellsWhy) {
  const std::pair<SerialOpenError, const char*> reasons[] = {
      {SerialOpenError::kReadEvent, "Error Creating Read Event"},
      {SerialOpenError::kWriteEvent, "Error Creating Write Event"},
      {SerialOpenError::kStopEvent, "Error Creating Terminate Event"},
      {SerialOpenError::kDevice, "Invalid Handle Value"},
      {SerialOpenError::kTimeouts, "Error Setting Timeouts"},
  };
  for (const auto& [error, text] : reasons) {
    refusal_ = error;
    EXPECT_FALSE(port_.Open(L"COM8"));
    EXPECT_FALSE(port_.is_open());
    EXPECT_EQ(log_.back(), std::string("1 PRINTERDialog::OpenPort - ") + text);
  }
}

TEST_F(PortOnAScript, ItOpensAgainAfterAFailure) {
  refusal_ = SerialOpenError::kDevice;
  port_.Open(L"COM8");
  refusal_.reset();
  EXPECT_TRUE(port_.Open(L"COM8"));
}

TEST_F(PortOnAScript, BlocksAreTakenInTheirOrderAndEmptyOnesAreNone) {
  script_->reads = {{.bytes = "one"}, {.bytes = ""}, {.bytes = "two"}};
  ReadAll();
  EXPECT_THAT(Taken(), ElementsAre("one", "two"));
  EXPECT_THAT(Taken(), IsEmpty());
}

TEST_F(PortOnAScript, OneWakeStandsForAllBlocksUntilTheyAreTaken) {
  script_->reads = {{.bytes = "one"}, {.bytes = "two"}};
  ReadAll();
  EXPECT_EQ(wakes_, 1);
}

TEST_F(PortOnAScript, AReadThatFailsIsLoggedByItsNumberAndDoesNotEndTheReader) {
  script_->reads = {{.error = 5}, {.bytes = "after"}};
  ReadAll();
  port_.Close();
  EXPECT_THAT(Taken(), ElementsAre("after"));
  EXPECT_THAT(log_, Contains("1 PRINTERDialog::ReceiveDataWorker - 5"));
}

TEST_F(PortOnAScript, AReadThatCannotStartIsLoggedAndEndsTheReader) {
  script_->reads = {{.start = platform::IoStart::kFailed}, {.bytes = "never"}};
  port_.Open(L"COM8");
  script_->AwaitRead(1);
  port_.Close();
  EXPECT_THAT(Taken(), IsEmpty());
  EXPECT_THAT(log_, Contains("1 PRINTERDialog::ReceiveDataWorker - Error Reading Port"));
}

TEST_F(PortOnAScript, SendsARequestAsOneWrite) {
  port_.Open(L"COM8");
  port_.Send(kInformationRequest);
  port_.Send(kCodePagesRequest);
  EXPECT_THAT(script_->written, ElementsAre("\x1D\x49\x01", "\x1D\x4E\x05\x02"));
}

TEST_F(PortOnAScript, SendsNothingThroughAClosedPort) {
  port_.Send(kInformationRequest);
  port_.Open(L"COM8");
  port_.Close();
  port_.Send(kInformationRequest);
  EXPECT_THAT(script_->written, IsEmpty());
}

TEST_F(PortOnAScript, AWriteThatIsStoppedIsNotLogged) {
  script_->writes = {{.start = platform::IoStart::kPending, .waits = {platform::IoWait::kStopped}}};
  port_.Open(L"COM8");
  port_.Send(kInformationRequest);
  EXPECT_EQ(log_.size(), 1U);
}

TEST_F(PortOnAScript, AWriteThatFailsIsLoggedAndLeavesThePortOpen) {
  script_->writes = {{.start = platform::IoStart::kFailed}};
  port_.Open(L"COM8");
  port_.Send(kInformationRequest);
  EXPECT_TRUE(port_.is_open());
  EXPECT_EQ(log_.back(), "1 PRINTERDialog::SendData - Error Writing to Port");
}

TEST_F(PortOnAScript, ASecondCloseDoesNothing) {
  port_.Open(L"COM8");
  port_.Close();
  EXPECT_TRUE(script_->closed);
  port_.Close();
  EXPECT_FALSE(port_.is_open());
}

TEST_F(PortOnAScript, WhatCameBeforeTheCloseCanStillBeTaken) {
  script_->reads = {{.bytes = "one"}};
  ReadAll();
  port_.Close();
  EXPECT_THAT(Taken(), ElementsAre("one"));
}

TEST_F(PortOnAScript, AReaderThatIsFarAheadIsLetGoByTheClose) {
  for (int i = 0; i < 400; ++i) script_->reads.push_back({.bytes = "block"});
  port_.Open(L"COM8");
  script_->AwaitRead(257);
  port_.Close();
  EXPECT_EQ(Taken().size(), 256U);
}

TEST_F(PortOnAScript, AReaderThatIsFarAheadGoesOnOnceItsBlocksAreTaken) {
  for (int i = 0; i < 300; ++i) script_->reads.push_back({.bytes = "block"});
  port_.Open(L"COM8");
  script_->AwaitRead(257);
  std::size_t taken = Taken().size();
  script_->AwaitRead(301);
  taken += Taken().size();
  EXPECT_EQ(taken, 300U);
}

}  // namespace
}  // namespace qlx
