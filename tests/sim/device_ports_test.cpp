#include <fstream>
#include <iterator>

#include <gmock/gmock.h>

#include "sim/DevicePorts.h"
#include "tests/sim/PlayedServices.h"
#include "tests/sim/TtyClient.h"

namespace qlx::sim {
namespace {

using std::chrono::milliseconds;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class DevicePortsTest : public testing::Test {
 protected:
  DevicePortsTest() {
    std::ofstream(directory_.path() / "old") << "x";
    settings_.ports = {{Kind::kMsr, "COM3"}, {Kind::kDrawers, "COM4"}, {Kind::kPrinter, "COM5"}};
    settings_.msr.head = "head";
  }

  /// Runs the ports in a loop of their own, with the service started.
  void Start() {
    loop_.Do([this] { ports_.Start(); });
  }
  void Stop() {
    loop_.Do([this] { ports_.Stop(); });
  }
  Refusal Do(const std::function<Refusal()>& action) {
    Refusal refusal;
    loop_.Do([&] { refusal = action(); });
    return refusal;
  }
  Refusal Send(Kind kind, const std::string& bytes) {
    return Do([&] { return ports_.Send(kind, bytes); });
  }
  std::vector<std::string> Status() {
    std::vector<std::string> lines;
    loop_.Do([&] { lines = ports_.Status(); });
    return lines;
  }
  std::filesystem::path Link(const char* port) const { return links_ / ("MZP_" + std::string(port)); }
  std::string Receipt(const char* name) const {
    std::ifstream file(directory_.path() / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  ScratchDirectory directory_;
  std::filesystem::path links_ = directory_.path() / "ports";
  SaidLines said_;
  DeviceSettings settings_;
  EventLoop event_loop_;
  DevicePorts ports_{event_loop_,
                     {links_, {"COM3", "COM4", "COM5", "COM6"}, directory_.path()},
                     [this] { return settings_; },
                     said_.Listener()};
  LoopThread loop_{event_loop_};
};

TEST_F(DevicePortsTest, ThePortsAreThereBeforeTheServiceRuns) {
  EXPECT_THAT(Status(), ElementsAre("COM3 none plugged", "COM4 none plugged", "COM5 none plugged",
                                    "COM6 none plugged"));
  EXPECT_TRUE(TtyClient(Link("COM6")).opened());
}

TEST_F(DevicePortsTest, TheServicesStartPutsTheDevicesOnTheirPorts) {
  Start();
  EXPECT_THAT(Status(), ElementsAre("COM3 msr plugged", "COM4 drawers plugged", "COM5 printer plugged",
                                    "COM6 none plugged"));
  EXPECT_THAT(said_.All(), Contains("drawers is on COM4"));
}

TEST_F(DevicePortsTest, ADeviceAnswersOnItsPort) {
  Start();
  const TtyClient program(Link("COM4"));
  program.Write("\x06");
  EXPECT_EQ(program.Read(1), "\x18");
  program.Write("\x07\x1B\x07");
  ASSERT_TRUE(said_.Await("drawers: drawer 1 and drawer 2 opened"));
  program.Write("\x06");
  EXPECT_EQ(program.Read(1), "\x78");
}

TEST_F(DevicePortsTest, WhileTheServiceIsStoppedNoDeviceAnswersOrSends) {
  Start();
  Stop();
  const TtyClient program(Link("COM4"));
  EXPECT_TRUE(program.Write(std::string(500'000, '\x06')));  // more than waits unread
  EXPECT_EQ(program.ReadNow(), "");
  EXPECT_THAT(said_.All(), Not(Contains("drawers: status 0x18")));
  EXPECT_EQ(Send(Kind::kMsr, "x"), "the service QLXSVC is not running");
}

TEST_F(DevicePortsTest, APortWithoutADeviceSwallowsEverything) {
  Start();
  const TtyClient program(Link("COM6"));
  EXPECT_TRUE(program.Write(std::string(500'000, '\x06')));
  EXPECT_EQ(program.ReadNow(), "");
}

TEST_F(DevicePortsTest, AChangedAssignmentCountsFromTheNextStart) {
  Start();
  settings_.ports[Kind::kDrawers] = "COM6";
  EXPECT_THAT(Status(), Contains("COM4 drawers plugged"));
  Stop();
  EXPECT_THAT(Status(), Contains("COM4 drawers plugged"));
  Start();
  EXPECT_THAT(Status(), Contains("COM4 none plugged"));
  EXPECT_THAT(Status(), Contains("COM6 drawers plugged"));
}

TEST_F(DevicePortsTest, ChangedSettingsCountFromTheNextStart) {
  Start();
  settings_.msr.head = "changed";
  const auto swipe = [this] { return ports_.Send(Kind::kMsr, ports_.devices().msr.Swipe({"A", "", ""})); };
  const TtyClient program(Link("COM3"));
  Do(swipe);
  EXPECT_EQ(program.Read(4), "head");
  Stop();
  Start();
  Do(swipe);
  EXPECT_THAT(program.Read(10), HasSubstr("changed"));
}

TEST_F(DevicePortsTest, APortThatIsNotThereIsSaid) {
  settings_.ports[Kind::kPci] = "COM99\x1b";
  Start();
  EXPECT_THAT(said_.All(), Contains("pci has no port: there is no COM99\\x1b"));
  EXPECT_EQ(Send(Kind::kPci, "x"), "pci has no port");
}

TEST_F(DevicePortsTest, OnAPortThatIsAssignedTwiceTheFirstDeviceAnswers) {
  settings_.ports[Kind::kPrinter] = "COM3";
  Start();
  EXPECT_THAT(said_.All(), Contains("printer has no port: COM3 is the port of msr"));
  EXPECT_THAT(Status(), Contains("COM3 msr plugged"));
}

TEST_F(DevicePortsTest, AnUnpluggedDeviceIsSilentUntilItIsPluggedAgain) {
  Start();
  const TtyClient program(Link("COM3"));
  EXPECT_EQ(Do([this] { return ports_.Unplug(Kind::kMsr); }), "");
  EXPECT_TRUE(program.AwaitHangUp());
  EXPECT_EQ(Send(Kind::kMsr, "x"), "msr is unplugged");
  EXPECT_EQ(Do([this] { return ports_.Plug(Kind::kMsr); }), "");
  EXPECT_EQ(Send(Kind::kMsr, "x"), "");
  EXPECT_EQ(TtyClient(Link("COM3")).Read(1), "x");
}

TEST_F(DevicePortsTest, AnUnpluggedDeviceStaysUnpluggedOverARestartOnItsNewPort) {
  Start();
  Do([this] { return ports_.Unplug(Kind::kMsr); });
  settings_.ports[Kind::kMsr] = "COM6";
  Stop();
  Start();
  EXPECT_THAT(Status(), ElementsAre("COM3 none plugged", "COM4 drawers plugged", "COM5 printer plugged",
                                    "COM6 msr unplugged"));
}

TEST_F(DevicePortsTest, ADeviceWithoutAPortCannotBeUnplugged) {
  Start();
  EXPECT_EQ(Do([this] { return ports_.Unplug(Kind::kPci); }), "pci has no port");
}

TEST_F(DevicePortsTest, AReceiptIsKeptWhole) {
  Start();
  const TtyClient program(Link("COM5"));
  program.Write("first line\n");
  program.Write("\fbehind the feed");
  ASSERT_TRUE(said_.Await("printer: receipt of 27 bytes kept as receipt-1.bin"));
  EXPECT_EQ(Receipt("receipt-1.bin"), "first line\n\fbehind the feed");
}

TEST_F(DevicePortsTest, AReceiptIsDrawnBesideItsBytes) {
  Start();
  TtyClient(Link("COM5")).Write("first line\n\f");
  ASSERT_TRUE(said_.Await("printer: receipt drawn as receipt-1.png"));
  EXPECT_EQ(Receipt("receipt-1.png").substr(1, 3), "PNG");
}

TEST_F(DevicePortsTest, APictureThatIsThereAlreadyStays) {
  std::ofstream(directory_.path() / "receipt-1.png") << "old";
  Start();
  TtyClient(Link("COM5")).Write("new");
  ASSERT_TRUE(said_.Await("printer: receipt drawn as receipt-2.png"));
  EXPECT_EQ(Receipt("receipt-1.png"), "old");
}

TEST_F(DevicePortsTest, AReceiptThatIsThereAlreadyStays) {
  std::ofstream(directory_.path() / "receipt-1.bin") << "old";
  Start();
  TtyClient(Link("COM5")).Write("new");
  ASSERT_TRUE(said_.Await("printer: receipt of 3 bytes kept as receipt-2.bin"));
  EXPECT_EQ(Receipt("receipt-1.bin"), "old");
}

TEST_F(DevicePortsTest, AStopEndsAReceipt) {
  Start();
  TtyClient(Link("COM5")).Write("half");
  ASSERT_TRUE(said_.Await("printer: 4 bytes"));
  Stop();
  EXPECT_EQ(Receipt("receipt-1.bin"), "half");
}

TEST_F(DevicePortsTest, AnEndlessReceiptIsKeptInPieces) {
  Start();
  const TtyClient program(Link("COM5"));
  const std::string endless(2'500'000, 'x');
  EXPECT_TRUE(program.Write(endless));
  std::string kept;
  for (int tries = 0; tries < 1000 && kept.size() < endless.size(); ++tries) {
    usleep(10000);
    kept = Receipt("receipt-1.bin") + Receipt("receipt-2.bin") + Receipt("receipt-3.bin");
  }
  EXPECT_TRUE(kept == endless);
  EXPECT_LT(Receipt("receipt-1.bin").size(), 1'100'000U);
}

TEST_F(DevicePortsTest, AReceiptThatCannotBeKeptIsSaid) {
  Start();
  std::filesystem::remove_all(directory_.path());
  Do([this] {
    ports_.devices().printer.Receive("lost");
    ports_.Stop();
    return Refusal();
  });
  EXPECT_THAT(said_.All(), Contains("printer: receipt of 4 bytes cannot be kept"));
}

TEST_F(DevicePortsTest, AHundredUnplugsLeaveNoDescriptorAndAnAnsweringPrinter) {
  Start();
  const std::ptrdiff_t before = OpenDescriptors();
  for (int i = 0; i < 100; ++i) {
    const TtyClient program(Link("COM5"));
    ASSERT_TRUE(program.Write("\x1D\x49\x01"));
    Do([this] { return ports_.Unplug(Kind::kPrinter); });
    ASSERT_TRUE(program.AwaitHangUp());
    Do([this] { return ports_.Plug(Kind::kPrinter); });
  }
  EXPECT_EQ(OpenDescriptors(), before);
  const TtyClient program(Link("COM5"));
  program.Write("\x1D\x49\x01");
  EXPECT_EQ(program.Read(33).size(), 33U);
  program.Write("receipt");
  EXPECT_TRUE(said_.Await("printer: 7 bytes"));
  Stop();
  EXPECT_EQ(Receipt("receipt-1.bin"), "receipt");
}

TEST_F(DevicePortsTest, BothBurstsOfASplitAnswerReachTheirReader) {
  Start();
  loop_.Do([this] { ports_.devices().printer.Become(*FindDescribedPrinter("split")); });
  const TtyClient program(Link("COM5"));
  program.Write("\x1D\x49\x01");
  EXPECT_EQ(program.Read(33).substr(20), "QLXSIM 01.00\r");
}

TEST_F(DevicePortsTest, AStopForgetsTheRestOfASplitAnswer) {
  Start();
  loop_.Do([this] { ports_.devices().printer.Become(*FindDescribedPrinter("split")); });
  const TtyClient program(Link("COM5"));
  program.Write("\x1D\x49\x01");
  program.Read(20);
  Stop();
  Start();
  loop_.Do([this] { ports_.devices().printer.Become(*FindDescribedPrinter("usual")); });
  program.Write("\x1D\x49\x01");
  EXPECT_EQ(program.Read(33).substr(0, 3), "\x1D\x49\x01");
}

TEST_F(DevicePortsTest, ATrickleSendsByteAfterByte) {
  Start();
  EXPECT_EQ(Do([this] { return ports_.Trickle(Kind::kMsr, "drops", milliseconds(1)); }), "");
  EXPECT_EQ(TtyClient(Link("COM3")).Read(5), "drops");
}

TEST_F(DevicePortsTest, AFurtherTrickleReplacesTheFirst) {
  Start();
  Do([this] { return ports_.Trickle(Kind::kMsr, "aaaa", std::chrono::hours(1)); });
  Do([this] { return ports_.Trickle(Kind::kMsr, "bbb", milliseconds(0)); });
  EXPECT_EQ(TtyClient(Link("COM3")).Read(4), "abbb");
}

TEST_F(DevicePortsTest, AnUnplugEndsATrickle) {
  Start();
  Do([this] { return ports_.Trickle(Kind::kMsr, std::string(50'000, 'a'), milliseconds(0)); });
  Do([this] {
    ports_.Unplug(Kind::kMsr);
    return ports_.Plug(Kind::kMsr);
  });
  const TtyClient program(Link("COM3"));
  for (const char* text : {"only", "this"}) {
    Send(Kind::kMsr, text);
    EXPECT_EQ(program.Read(4), text);
  }
}

TEST_F(DevicePortsTest, BytesThatNobodyReadsAreDroppedWithALine) {
  Start();
  Refusal refusal;
  for (int i = 0; i < 100 && refusal.empty(); ++i) refusal = Send(Kind::kMsr, std::string(65536, 'x'));
  EXPECT_EQ(refusal, "65536 bytes dropped: nobody reads COM3");
  EXPECT_THAT(said_.All(), Contains("msr: 65536 bytes dropped: nobody reads COM3"));
}

TEST_F(DevicePortsTest, AStopEndsAFlood) {
  Start();
  Do([this] { return ports_.Flood(Kind::kMsr, true); });
  const TtyClient program(Link("COM3"));
  ASSERT_EQ(program.Read(1000).size(), 1000U);
  Stop();
  while (!program.ReadNow().empty()) {
  }
  Start();
  Send(Kind::kMsr, "x");
  EXPECT_EQ(program.Read(1), "x");
}

TEST(DevicePorts, LinksOfAKilledSimulatorGoAndOthersFilesStay) {
  const ScratchDirectory directory;
  std::filesystem::create_symlink("/dev/null", directory.path() / "MZP_COM77");
  std::ofstream(directory.path() / "MZP_notes") << "mine";
  EventLoop loop;
  SaidLines said;
  {
    const DevicePorts ports(
        loop, {directory.path(), {"COM3"}, directory.path()}, [] { return DeviceSettings(); },
        said.Listener());
    EXPECT_FALSE(std::filesystem::is_symlink(directory.path() / "MZP_COM77"));
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path() / "MZP_COM3"));
  }
  EXPECT_FALSE(std::filesystem::is_symlink(directory.path() / "MZP_COM3"));
  EXPECT_TRUE(std::filesystem::exists(directory.path() / "MZP_notes"));
}

}  // namespace
}  // namespace qlx::sim
