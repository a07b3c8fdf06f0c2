#include <atomic>
#include <thread>

#include "tests/platform/OpenPort.h"

namespace qlx::platform {
namespace {

using std::chrono::milliseconds;

/// More than a port takes that nobody empties.
const std::string kMuch(1 << 20, 'w');

TEST_F(OpenPort, AReadStaysPendingUntilItsFirstByte) {
  EXPECT_EQ(port_->StartRead(buffer_), IoStart::kPending);
  EXPECT_EQ(port_->ReadResult(), std::nullopt);
  EXPECT_EQ(port_->WaitRead(milliseconds(0)), IoWait::kTimedOut);
  device_.Send("late");
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kEnded);
  EXPECT_EQ(port_->ReadResult(), 4U);
}

TEST_F(OpenPort, AReadWithoutAByteEndsEmptyAtItsTotalTimeOut) {
  EXPECT_EQ(Read(1), "");
}

TEST_F(OpenPort, ABlockIsWhatComesBeforeAGap) {
  device_.Send("one");
  EXPECT_EQ(Read(), "one");
  device_.Send("two");
  EXPECT_EQ(Read(), "two");
}

TEST_F(OpenPort, AFullBufferEndsARead) {
  device_.Send(std::string(3000, 'x'));
  EXPECT_EQ(Read().value_or("").size(), 2048U);
  EXPECT_EQ(Read().value_or("").size(), 952U);
}

TEST_F(OpenPort, EveryByteArrivesUnaltered) {
  device_.Send(AllBytes());
  EXPECT_EQ(Read(), AllBytes());
}

TEST_F(OpenPort, EveryByteIsSentUnaltered) {
  EXPECT_EQ(StartWrite(AllBytes()), IoStart::kCompleted);
  EXPECT_EQ(device_.Receive(256), AllBytes());
}

TEST_F(OpenPort, TheStopEndsAPendingRead) {
  port_->StartRead(buffer_);
  std::thread stops([this] { port_->Stop(); });
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kStopped);
  stops.join();
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kStopped) << "and every later one";
}

TEST_F(OpenPort, TheStopWinsOverBytesThatAreThere) {
  device_.Send("flood");
  port_->Stop();
  port_->StartRead(buffer_);
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kStopped);
}

TEST_F(OpenPort, AWriteThatNobodyTakesStaysPendingAndHasNoResult) {
  EXPECT_EQ(StartWrite(kMuch), IoStart::kPending);
  EXPECT_EQ(port_->WaitWrite(milliseconds(1)), IoWait::kTimedOut);
  EXPECT_FALSE(port_->WriteResult());
}

TEST_F(OpenPort, APendingWriteEndsOnceEveryByteIsTaken) {
  EXPECT_EQ(StartWrite(kMuch), IoStart::kPending);
  std::string received;
  std::thread takes([&] { received = device_.Receive(kMuch.size()); });
  EXPECT_EQ(port_->WaitWrite(kLong), IoWait::kEnded);
  EXPECT_TRUE(port_->WriteResult());
  takes.join();
  EXPECT_EQ(received, kMuch);
}

TEST_F(OpenPort, TheStopEndsAPendingWrite) {
  EXPECT_EQ(StartWrite(kMuch), IoStart::kPending);
  port_->Stop();
  EXPECT_EQ(port_->WaitWrite(kLong), IoWait::kStopped);
}

TEST_F(OpenPort, AWriteToAnUnpluggedDeviceFails) {
  device_.Unplug();
  EXPECT_EQ(StartWrite("abc"), IoStart::kFailed);
}

TEST_F(OpenPort, APendingWriteFailsWhenTheDeviceIsUnplugged) {
  EXPECT_EQ(StartWrite(kMuch), IoStart::kPending);
  std::thread unplugs([this] { device_.Unplug(); });
  EXPECT_EQ(port_->WaitWrite(kLong), IoWait::kEnded);
  EXPECT_FALSE(port_->WriteResult());
  unplugs.join();
}

TEST_F(OpenPort, IsSharedWithOthersWhoMayTakeTheBytesFirst) {
  std::atomic<std::size_t> taken = 0;
  std::atomic<bool> failed = false;
  const auto read_all = [&](SerialPort& port) {
    std::array<std::uint8_t, 16> buffer{};
    for (;;) {
      if (port.StartRead(buffer) == IoStart::kFailed) failed = true;
      if (failed || port.WaitRead(kLong) == IoWait::kStopped) return;
      taken += port.ReadResult().value_or(0);
    }
  };
  const auto other = OpenSerialPort(L"COM5", kTimeouts).port;
  std::thread readers[] = {std::thread([&] { read_all(*port_); }), std::thread([&] { read_all(*other); })};
  for (std::size_t sent = 1; sent <= 300 && !failed; ++sent) {
    device_.Send("x");
    while (taken < sent && !failed) std::this_thread::yield();
  }
  port_->Stop();
  other->Stop();
  for (std::thread& reader : readers) reader.join();
  EXPECT_FALSE(failed);
}

TEST_F(OpenPort, APortThatIsNotThereIsADeviceError) {
  const SerialOpening opening = OpenSerialPort(L"COM6", kTimeouts);
  EXPECT_FALSE(opening.port);
  EXPECT_EQ(opening.error, SerialOpenError::kDevice);
}

}  // namespace
}  // namespace qlx::platform
