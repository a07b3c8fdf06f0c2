// What a port on a tty does beyond what every port does.
#include <filesystem>
#include <fstream>
#include <thread>

#include <sys/stat.h>

#include "tests/platform/OpenPort.h"

namespace qlx::platform {
namespace {

using std::chrono::milliseconds;
using testing::PortDirectory;
using testing::VirtualPort;
using OpenTty = OpenPort;

TEST_F(OpenTty, AReadNeverCompletesAtOnceEvenWhenBytesAreThere) {
  device_.Send("early");
  EXPECT_EQ(port_->StartRead(buffer_), IoStart::kPending);
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

class TtyByName : public ::testing::Test {
 protected:
  SerialOpening Open(const std::wstring& name) { return OpenSerialPort(name, kTimeouts); }
  std::filesystem::path Path(const char* name) const { return directory_.path() / name; }

  PortDirectory directory_;
};

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
