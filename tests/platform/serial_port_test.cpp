#include "platform/serial_port.h"

#include <array>
#include <atomic>
#include <fstream>
#include <numeric>
#include <thread>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/support/VirtualPort.h"

namespace qlx::platform {
namespace {

using std::chrono::milliseconds;
using testing::PortDirectory;
using testing::VirtualPort;

constexpr SerialTimeouts kTimeouts = {milliseconds(1), milliseconds(1), milliseconds(1)};
constexpr milliseconds kLong{10000};

std::string AllBytes() {
  std::string bytes(256, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  return bytes;
}

class OpenTty : public ::testing::Test {
 protected:
  OpenTty() : port_(OpenSerialPort(L"COM5", kTimeouts).port) {}

  /// One read of at most `size` bytes; nothing when it failed.
  std::optional<std::string> Read(std::size_t size = 2048) {
    if (port_->StartRead(std::span(buffer_).first(size)) != IoStart::kPending) return std::nullopt;
    if (port_->WaitRead(kLong) != IoWait::kEnded) return std::nullopt;
    const auto count = port_->ReadResult();
    if (!count) return std::nullopt;
    return std::string(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(*count));
  }

  IoStart StartWrite(std::size_t size) {
    bytes_.assign(size, 'w');
    return port_->StartWrite({reinterpret_cast<const std::uint8_t*>(bytes_.data()), size});
  }

  PortDirectory directory_;
  VirtualPort device_{directory_};
  std::unique_ptr<SerialPort> port_;
  std::array<std::uint8_t, 2048> buffer_{};
  std::string bytes_;
};

TEST_F(OpenTty, AReadStaysPendingUntilItsFirstByte) {
  EXPECT_EQ(port_->StartRead(buffer_), IoStart::kPending);
  EXPECT_EQ(port_->ReadResult(), std::nullopt);
  EXPECT_EQ(port_->WaitRead(milliseconds(0)), IoWait::kTimedOut);
  device_.Send("late");
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kEnded);
  EXPECT_EQ(port_->ReadResult(), 4U);
}

TEST_F(OpenTty, AReadNeverCompletesAtOnceEvenWhenBytesAreThere) {
  device_.Send("early");
  EXPECT_EQ(port_->StartRead(buffer_), IoStart::kPending);
}

TEST_F(OpenTty, AReadWithoutAByteEndsEmptyAtItsTotalTimeOut) {
  EXPECT_EQ(Read(1), "");
}

TEST_F(OpenTty, ABlockIsWhatComesBeforeAGap) {
  device_.Send("one");
  EXPECT_EQ(Read(), "one");
  device_.Send("two");
  EXPECT_EQ(Read(), "two");
}

TEST_F(OpenTty, AFullBufferEndsARead) {
  device_.Send(std::string(3000, 'x'));
  EXPECT_EQ(Read().value_or("").size(), 2048U);
  EXPECT_EQ(Read().value_or("").size(), 952U);
}

TEST_F(OpenTty, EveryByteArrivesUnaltered) {
  device_.Send(AllBytes());
  EXPECT_EQ(Read(), AllBytes());
}

TEST_F(OpenTty, EveryByteIsSentUnaltered) {
  bytes_ = AllBytes();
  EXPECT_EQ(port_->StartWrite({reinterpret_cast<const std::uint8_t*>(bytes_.data()), bytes_.size()}),
            IoStart::kCompleted);
  EXPECT_EQ(device_.Receive(bytes_.size()), bytes_);
}

TEST_F(OpenTty, NothingIsEchoed) {
  device_.Send("secret");
  Read();
  EXPECT_EQ(device_.Receive(1, 50), "");
}

TEST_F(OpenTty, AnUnpluggedDeviceEndsThePendingReadAndFailsTheNext) {
  port_->StartRead(buffer_);
  std::thread unplugs([this] { device_.Unplug(); });
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kEnded);
  EXPECT_EQ(port_->ReadResult(), 0U);
  EXPECT_EQ(port_->StartRead(buffer_), IoStart::kFailed);
  unplugs.join();
}

TEST_F(OpenTty, TheLastBytesOfAnUnpluggedDeviceAreNotLost) {
  port_->StartRead(buffer_);
  device_.Send("bye");
  EXPECT_EQ(port_->WaitRead(milliseconds(1)), IoWait::kEnded);
  device_.Unplug();
  EXPECT_EQ(port_->ReadResult(), 3U);
  EXPECT_EQ(Read(), "");
  EXPECT_EQ(Read(), std::nullopt);
}

TEST_F(OpenTty, TheStopEndsAPendingRead) {
  port_->StartRead(buffer_);
  std::thread stops([this] { port_->Stop(); });
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kStopped);
  stops.join();
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kStopped) << "and every later one";
}

TEST_F(OpenTty, TheStopWinsOverBytesThatAreThere) {
  device_.Send("flood");
  port_->Stop();
  port_->StartRead(buffer_);
  EXPECT_EQ(port_->WaitRead(kLong), IoWait::kStopped);
}

TEST_F(OpenTty, AWriteThatNobodyTakesStaysPendingAndHasNoResult) {
  EXPECT_EQ(StartWrite(1 << 20), IoStart::kPending);
  EXPECT_EQ(port_->WaitWrite(milliseconds(1)), IoWait::kTimedOut);
  EXPECT_FALSE(port_->WriteResult());
}

TEST_F(OpenTty, APendingWriteEndsOnceEveryByteIsTaken) {
  constexpr std::size_t kSize = 1 << 20;
  EXPECT_EQ(StartWrite(kSize), IoStart::kPending);
  std::string received;
  std::thread takes([&] { received = device_.Receive(kSize); });
  EXPECT_EQ(port_->WaitWrite(kLong), IoWait::kEnded);
  EXPECT_TRUE(port_->WriteResult());
  takes.join();
  EXPECT_EQ(received, bytes_);
}

TEST_F(OpenTty, TheStopEndsAPendingWrite) {
  EXPECT_EQ(StartWrite(1 << 20), IoStart::kPending);
  port_->Stop();
  EXPECT_EQ(port_->WaitWrite(kLong), IoWait::kStopped);
}

TEST_F(OpenTty, AWriteToAnUnpluggedDeviceFails) {
  device_.Unplug();
  EXPECT_EQ(StartWrite(3), IoStart::kFailed);
}

TEST_F(OpenTty, APendingWriteFailsWhenTheDeviceIsUnplugged) {
  EXPECT_EQ(StartWrite(1 << 20), IoStart::kPending);
  std::thread unplugs([this] { device_.Unplug(); });
  EXPECT_EQ(port_->WaitWrite(kLong), IoWait::kEnded);
  EXPECT_FALSE(port_->WriteResult());
  unplugs.join();
}

TEST_F(OpenTty, IsSharedWithOthersWhoMayTakeTheBytesFirst) {
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

class TtyByName : public ::testing::Test {
 protected:
  SerialOpening Open(const std::wstring& name) { return OpenSerialPort(name, kTimeouts); }
  std::filesystem::path Path(const char* name) const { return directory_.path() / name; }

  PortDirectory directory_;
};

TEST_F(TtyByName, APortThatIsNotThereIsADeviceError) {
  const SerialOpening opening = Open(L"COM5");
  EXPECT_FALSE(opening.port);
  EXPECT_EQ(opening.error, SerialOpenError::kDevice);
}

TEST_F(TtyByName, WhatIsNoTtyIsADeviceErrorAndHoldsNobodyUp) {
  std::ofstream(Path("MZP_COM5")) << "a file";
  mkfifo(Path("MZP_COM6").c_str(), 0600);
  std::filesystem::create_directory(Path("MZP_COM7"));
  std::filesystem::create_symlink("/dev/null", Path("MZP_COM8"));
  std::filesystem::create_symlink(Path("MZP_COM9"), Path("MZP_COM9"));
  for (const wchar_t* name : {L"COM5", L"COM6", L"COM7", L"COM8", L"COM9"}) {
    EXPECT_FALSE(Open(name).port) << name;
    EXPECT_EQ(Open(name).error, SerialOpenError::kDevice) << name;
  }
}

TEST_F(TtyByName, ANameNeverLeadsOutOfThePortDirectory) {
  std::filesystem::create_directory(Path("MZP_COM5"));
  const PortDirectory elsewhere;
  const VirtualPort device(elsewhere);
  setenv("QUILLON_PORT_DIR", directory_.path().c_str(), 1);
  const std::wstring out = L"COM5/../../" + elsewhere.path().filename().wstring() + L"/MZP_COM5";
  ASSERT_TRUE(std::filesystem::exists(directory_.path() / ("MZP_" + std::filesystem::path(out).string())));
  EXPECT_FALSE(Open(out).port);
}

TEST_F(TtyByName, TheLineIsGivenBackAsItWasFoundAndItsSpeedIsNotTouched) {
  const VirtualPort device(directory_);
  termios before = device.Line();
  cfsetspeed(&before, B19200);
  device.SetLine(before);
  {
    const SerialOpening opening = Open(L"COM5");
    const termios during = device.Line();
    EXPECT_EQ(during.c_lflag & (ECHO | ICANON | ISIG), 0U);
    EXPECT_EQ(cfgetospeed(&during), static_cast<speed_t>(B19200));
  }
  const termios after = device.Line();
  EXPECT_EQ(after.c_lflag, before.c_lflag);
  EXPECT_EQ(after.c_iflag, before.c_iflag);
  EXPECT_EQ(after.c_oflag, before.c_oflag);
  EXPECT_EQ(after.c_cflag, before.c_cflag);
}

std::ptrdiff_t OpenDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST_F(TtyByName, NoDescriptorIsLeftBehind) {
  const VirtualPort device(directory_);
  const std::ptrdiff_t before = OpenDescriptors();
  for (int i = 0; i < 100; ++i) {
    EXPECT_TRUE(Open(L"COM5").port);
    EXPECT_FALSE(Open(L"COM6").port);
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

}  // namespace
}  // namespace qlx::platform
