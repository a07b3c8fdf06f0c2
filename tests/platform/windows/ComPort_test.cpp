// What a COM port does beyond what every port does.
#include <thread>

#include <windows.h>

#include "tests/platform/OpenPort.h"
#include "tests/support/windows/handle_growth.h"

namespace qlx::platform {
namespace {

using std::chrono::milliseconds;
using OpenComPort = OpenPort;

TEST_F(OpenComPort, AReadThatHasNotEndedSaysSoByItsErrorNumber) {
  port_->StartRead(buffer_);
  EXPECT_EQ(port_->ReadResult(), std::nullopt);
  EXPECT_EQ(port_->ReadError(), ERROR_IO_INCOMPLETE);
  device_.Send("x");
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kEnded);
  EXPECT_EQ(port_->ReadResult(), 1U);
  EXPECT_EQ(port_->ReadError(), ERROR_SUCCESS);
}

TEST_F(OpenComPort, AnUnpluggedDeviceFailsThePendingReadAndTheNextCannotStart) {
  port_->StartRead(buffer_);
  std::thread unplugs([this] { device_.Unplug(); });
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kEnded);
  EXPECT_EQ(port_->ReadResult(), std::nullopt);
  EXPECT_EQ(port_->StartRead(buffer_), IoStart::kFailed);
  unplugs.join();
}

TEST_F(OpenComPort, ACancelledReadHasLetGoOfItsBuffer) {
  port_->StartRead(buffer_);
  port_->CancelRead();
  device_.Send("after");
  std::array<std::uint8_t, 2048> other{};
  ASSERT_EQ(port_->StartRead(other), IoStart::kPending);
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kEnded);
  EXPECT_EQ(port_->ReadResult(), 5U);
  EXPECT_EQ(buffer_[0], 0);
}

TEST_F(OpenComPort, AReadThatIsCancelledWhileItsBytesComeEndsAllTheSame) {
  for (int i = 0; i < 200; ++i) {
    port_->StartRead(buffer_);
    device_.Send("first");
    device_.Send("second");
    port_->CancelRead();
  }
  port_->Stop();
  port_->StartRead(buffer_);
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kStopped);
}

TEST_F(OpenComPort, AReadThatNobodyWaitedForMakesRoomForTheNext) {
  port_->StartRead(buffer_);
  std::array<std::uint8_t, 2048> other{};
  port_->StartRead(other);
  device_.Send("x");
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kEnded);
  EXPECT_EQ(other[0], 'x');
  EXPECT_EQ(buffer_[0], 0);
}

TEST_F(OpenComPort, ClosesWithTransfersThatAnotherThreadHasPending) {
  std::thread starts([this] {
    port_->StartRead(buffer_);
    StartWrite(std::string(1 << 20, 'w'));
  });
  starts.join();
  port_.reset();
  EXPECT_TRUE(OpenSerialPort(L"COM5", kTimeouts).port);
}

TEST_F(OpenComPort, AWriteWhoseTimeOutsEndItIsNoWrite) {
  StartWrite(std::string(1 << 20, 'w'));
  const auto port = OpenSerialPort(L"COM5", {milliseconds(1), milliseconds(0), milliseconds(1)}).port;
  constexpr std::uint8_t kByte[] = {1};
  const auto written = [&] {
    const IoStart start = port->StartWrite(kByte);
    if (start == IoStart::kPending) {
      EXPECT_EQ(port->WaitWrite(kLong), IoWait::kEnded);
    }
    return start != IoStart::kFailed && port->WriteResult();
  };
  int bytes = 0;  // that still find room
  while (bytes < 100'000 && written()) ++bytes;
  EXPECT_LT(bytes, 100'000);
}

SerialOpenError ErrorOf(const wchar_t* name) {
  const SerialOpening opening = OpenSerialPort(name, kTimeouts);
  EXPECT_FALSE(opening.port) << name;
  return opening.error;
}

TEST(ComPortByName, ADeviceWithoutTimeOutsIsATimeOutsError) {
  EXPECT_EQ(ErrorOf(L"NUL"), SerialOpenError::kTimeouts);
}

TEST(ComPortByName, ANameThatLeadsToAFileOrAPipeIsADeviceError) {
  const HANDLE pipe = CreateNamedPipeW(L"\\\\.\\pipe\\qlx", PIPE_ACCESS_DUPLEX, 0, 1, 64, 64, 0, nullptr);
  for (const wchar_t* name : {L"pipe\\qlx", L"pipe/qlx", L"C:\\windows\\win.ini", L"C:", L""}) {
    EXPECT_EQ(ErrorOf(name), SerialOpenError::kDevice) << name;
  }
  CloseHandle(pipe);
}

TEST_F(OpenComPort, NoHandleIsLeftBehind) {
  EXPECT_LT(testing::HandleGrowth([] {
              for (int i = 0; i < 100; ++i) {
                EXPECT_TRUE(OpenSerialPort(L"COM5", kTimeouts).port);
                EXPECT_FALSE(OpenSerialPort(L"COM6", kTimeouts).port);
              }
            }),
            50);
}

}  // namespace
}  // namespace qlx::platform
