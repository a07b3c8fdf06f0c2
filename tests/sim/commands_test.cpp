#include "sim/Commands.h"

#include <gmock/gmock.h>

#include "tests/sim/PlayedServices.h"
#include "tests/sim/TtyClient.h"

namespace qlx::sim {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class CommandsTest : public testing::Test {
 protected:
  CommandsTest() {
    settings_ = ReadDeviceSettings("/nonexistent");
    for (std::size_t i = 0; i < std::size(kKinds); ++i) settings_.ports[kKinds[i].kind] = kNames[i];
    loop_.Do([this] { ports_.Start(); });
  }

  std::string Execute(const std::string& line) {
    std::string answer;
    loop_.Do([&] { answer = commands_.Execute(line); });
    return answer;
  }
  unsigned Status(Kind kind) {
    unsigned status = 0;
    loop_.Do([&] { status = static_cast<CashDrawers&>(ports_.devices().Of(kind)).Status(); });
    return status;
  }
  /// A program at the port of `kind`.
  TtyClient Open(Kind kind) const {
    return TtyClient(directory_.path() / "ports" /
                     ("MZP_" + std::string(kNames[static_cast<std::size_t>(kind)])));
  }

  static constexpr const char* kNames[] = {"COM3", "COM4", "COM5", "COM6", "COM7", "COM8"};
  ScratchDirectory directory_;
  SaidLines said_;
  DeviceSettings settings_;
  EventLoop event_loop_;
  DevicePorts ports_{event_loop_,
                     {directory_.path() / "ports", {std::begin(kNames), std::end(kNames)}, directory_.path()},
                     [this] { return settings_; },
                     said_.Listener()};
  Commands commands_{ports_};
  LoopThread loop_{event_loop_};
};

TEST_F(CommandsTest, HelpListsEveryCommand) {
  const std::string help = Execute("help");
  for (const char* word : {"help", "status", "swipe", "touch", "remove", "open", "close", "absent", "present",
                           "unplug", "plug", "printer", "garbage", "flood", "send", "trickle"}) {
    EXPECT_THAT("\n" + help, HasSubstr(std::string("\n") + word));
  }
  EXPECT_THAT(help, EndsWith("\nok\n"));
}

TEST_F(CommandsTest, StatusHasALineForEachPort) {
  EXPECT_THAT(Execute("status"),
              AllOf(StartsWith("COM3 msr plugged\nCOM4 display plugged\n"), EndsWith("\nok\n")));
}

TEST_F(CommandsTest, ASwipeSendsTheTestCard) {
  const TtyClient program = Open(Kind::kMsr);
  EXPECT_EQ(Execute("swipe"), "ok\n");
  MsrReader reader;
  reader.Configure(settings_.msr);
  const std::string sent = reader.Swipe(TestCard());
  EXPECT_EQ(program.Read(sent.size()), sent);
}

TEST_F(CommandsTest, ASwipeSendsTheGivenTracksWithTheirBlanks) {
  const TtyClient program = Open(Kind::kMsr);
  EXPECT_EQ(Execute("swipe A  B|12|3"), "ok\n");
  EXPECT_EQ(program.Read(13), "%A  B?;12?+3?");
}

TEST_F(CommandsTest, AMissingTrackCannotBeRead) {
  const TtyClient program = Open(Kind::kMsr);
  Execute("swipe |12");
  EXPECT_EQ(program.Read(10), "%E?;12?+E?");
}

TEST_F(CommandsTest, ACardWithFourTracksIsRefused) {
  EXPECT_EQ(Execute("swipe 1|2|3|4"), "error: a card has three tracks\n");
}

TEST_F(CommandsTest, AKeyTouchesAndGoes) {
  const TtyClient program = Open(Kind::kIButton);
  EXPECT_EQ(Execute("touch 1122334455667788"), "ok\n");
  EXPECT_EQ(program.Read(18), "1122334455667788\r\n");
  EXPECT_EQ(Execute("remove"), "ok\n");
  EXPECT_EQ(program.Read(16), std::string(16, '\0'));
}

TEST_F(CommandsTest, AKeyThatIsNotThereCannotGo) {
  EXPECT_EQ(Execute("remove"), "error: no key touches the reader\n");
}

TEST_F(CommandsTest, AnIdentifierHasSixteenHexadecimalDigits) {
  EXPECT_EQ(Execute("touch 112233445566778"),
            "error: 112233445566778 is no identifier of 16 hexadecimal digits\n");
  EXPECT_THAT(Execute("touch 11223344556677GG"), StartsWith("error: "));
}

TEST_F(CommandsTest, DrawersAreOpenedAndClosedOneByOne) {
  EXPECT_EQ(Execute("open 1"), "ok\n");
  EXPECT_EQ(Status(Kind::kDrawers), 0x58U);
  EXPECT_EQ(Execute("open 2"), "ok\n");
  EXPECT_EQ(Execute("close 1"), "ok\n");
  EXPECT_EQ(Status(Kind::kDrawers), 0x38U);
}

TEST_F(CommandsTest, AnAbsentDrawerCannotBeOpened) {
  EXPECT_EQ(Execute("absent 2"), "ok\n");
  EXPECT_EQ(Execute("open 2"), "error: that drawer is not present\n");
  EXPECT_EQ(Execute("present 2"), "ok\n");
  EXPECT_EQ(Execute("open 2"), "ok\n");
}

TEST_F(CommandsTest, ThePciDrawerIsAnotherOne) {
  EXPECT_EQ(Execute("open pci 1"), "ok\n");
  EXPECT_EQ(Status(Kind::kPci), 0x50U);
  EXPECT_EQ(Status(Kind::kDrawers), 0x18U);
}

TEST_F(CommandsTest, ThereAreTwoDrawers) {
  for (const char* line : {"open 0", "open 3", "open x", "open pci", "open usb 1", "open pci 1 2", "open"}) {
    EXPECT_THAT(Execute(line), StartsWith("error: ")) << line;
  }
}

TEST_F(CommandsTest, ADeviceIsUnpluggedAndPlugged) {
  EXPECT_EQ(Execute("unplug printer"), "ok\n");
  EXPECT_THAT(Execute("status"), HasSubstr("COM8 printer unplugged\n"));
  EXPECT_EQ(Execute("plug printer"), "ok\n");
  EXPECT_THAT(Execute("status"), HasSubstr("COM8 printer plugged\n"));
}

TEST_F(CommandsTest, GarbageOfFourThousandBytesArrivesWhole) {
  const TtyClient program = Open(Kind::kPrinter);
  EXPECT_EQ(Execute("garbage 4096 printer"), "ok\n");
  EXPECT_EQ(program.Read(4096).size(), 4096U);
  EXPECT_EQ(program.ReadNow(), "");
}

TEST_F(CommandsTest, GarbageForNobodyInParticularComesFromEveryPluggedDevice) {
  Execute("unplug display");
  EXPECT_EQ(Execute("garbage 10"), "ok\n");
  EXPECT_EQ(Open(Kind::kMsr).Read(10).size(), 10U);
  EXPECT_EQ(Open(Kind::kPrinter).Read(10).size(), 10U);
}

TEST_F(CommandsTest, NoGarbageIsNothing) {
  EXPECT_EQ(Execute("garbage 0 msr"), "ok\n");
  EXPECT_EQ(Open(Kind::kMsr).ReadNow(), "");
}

TEST_F(CommandsTest, BytesAreSentAsTheyAreWritten) {
  EXPECT_EQ(Execute("send msr 00fF0d"), "ok\n");
  EXPECT_EQ(Open(Kind::kMsr).Read(3), std::string("\x00\xFF\x0D", 3));
}

TEST_F(CommandsTest, BytesTrickle) {
  EXPECT_EQ(Execute("trickle msr 313233 1"), "ok\n");
  EXPECT_EQ(Open(Kind::kMsr).Read(3), "123");
}

TEST_F(CommandsTest, AFloodIsTurnedOnAndOff) {
  EXPECT_EQ(Execute("flood msr on"), "ok\n");
  EXPECT_EQ(Open(Kind::kMsr).Read(100'000).size(), 100'000U);
  EXPECT_EQ(Execute("flood msr off"), "ok\n");
}

TEST_F(CommandsTest, ThePrinterTakesATypeAndCodePages) {
  const TtyClient program = Open(Kind::kPrinter);
  EXPECT_EQ(Execute("printer type 7"), "ok\n");
  EXPECT_EQ(Execute("printer pages 437 80:850"), "ok\n");
  program.Write("\x1D\x49\x01");
  EXPECT_EQ(program.Read(33)[19], 7);
  program.Write("\x1D\x4E\x05\x02");
  EXPECT_EQ(program.Read(24).substr(18), "\x01\x01\xB5\x80\x03\x52");
}

TEST_F(CommandsTest, ThePrinterBecomesAnother) {
  const TtyClient program = Open(Kind::kPrinter);
  EXPECT_EQ(Execute("printer other-type"), "ok\n");
  program.Write("\x1D\x49\x01");
  EXPECT_EQ(program.Read(33)[19], 8);
}

TEST_F(CommandsTest, APrinterThatThereIsNotIsAnsweredWithThoseThatThereAre) {
  EXPECT_THAT(Execute("printer frob"), StartsWith("error: frob is no printer: there are usual many-pages"));
}

TEST_F(CommandsTest, HelpNamesTheDevicesAndThePrinters) {
  EXPECT_THAT(Execute("help"), AllOf(HasSubstr("\nKIND: msr display"),
                                     HasSubstr("\nNAME: usual many-pages no-pages other-type")));
}

TEST_F(CommandsTest, ThePrinterCanHaveNoCodePages) {
  EXPECT_EQ(Execute("printer pages"), "ok\n");
}

TEST_F(CommandsTest, AnEmptyLineIsFine) {
  EXPECT_EQ(Execute(""), "ok\n");
  EXPECT_EQ(Execute("  \t "), "ok\n");
}

TEST_F(CommandsTest, UnusableLinesAreAnsweredWithOneErrorLine) {
  for (const std::string line : {"frob",
                                 "SWIPE",
                                 "status now",
                                 "help me",
                                 "touch",
                                 "remove 1",
                                 "unplug",
                                 "unplug it",
                                 "plug msr display",
                                 "printer",
                                 "printer type",
                                 "printer type 256",
                                 "printer type -1",
                                 "printer type 1 2",
                                 "printer pages x",
                                 "printer pages 70000",
                                 "printer pages 800:1",
                                 "printer pages :1",
                                 "printer frob",
                                 "printer silent 1",
                                 "garbage",
                                 "garbage x",
                                 "garbage -1",
                                 "garbage 65537",
                                 "garbage 99999999999999999999",
                                 "garbage 1 it",
                                 "flood msr",
                                 "flood msr maybe",
                                 "flood it on",
                                 "send msr",
                                 "send msr 0",
                                 "send msr 0g",
                                 "send it 00",
                                 "send msr 00 00",
                                 "trickle msr 00",
                                 "trickle msr 00 -1",
                                 "trickle msr 0 1",
                                 "trickle it 00 1",
                                 "trickle msr 00 60001"}) {
    const std::string answer = Execute(line);
    EXPECT_THAT(answer, StartsWith("error: ")) << line;
    EXPECT_EQ(std::ranges::count(answer, '\n'), 1) << line;
  }
}

TEST_F(CommandsTest, BinaryGarbageIsAnsweredInPrintableCharacters) {
  EXPECT_EQ(Execute(std::string("\x1b[2J\0\xff\r", 7)),
            "error: there is no command \\x1b[2J\\x00\\xff: try help\n");
}

TEST_F(CommandsTest, RandomLinesNeverDoHarm) {
  std::mt19937 random(1);
  for (int i = 0; i < 2000; ++i) {
    std::string line(random() % 200, '\0');
    std::ranges::generate(line, [&] { return static_cast<char>(random()); });
    EXPECT_THAT(Execute(line), testing::AnyOf(StartsWith("error: "), "ok\n"));
  }
}

TEST_F(CommandsTest, WhileTheServiceIsStoppedDevicesCanBeMovedButSendNothing) {
  loop_.Do([this] { ports_.Stop(); });
  EXPECT_EQ(Execute("swipe"), "error: the service QLXSVC is not running\n");
  EXPECT_EQ(Execute("touch 1122334455667788"), "error: the service QLXSVC is not running\n");
  EXPECT_EQ(Execute("open 1"), "ok\n");
  EXPECT_EQ(Execute("unplug msr"), "ok\n");
}

TEST(CommandsWithoutConfiguration, DevicesHaveNoPort) {
  const ScratchDirectory directory;
  SaidLines said;
  EventLoop loop;
  DevicePorts ports(
      loop, {directory.path() / "ports", {"COM3"}, directory.path()},
      [] { return ReadDeviceSettings("/nonexistent"); }, said.Listener());
  Commands commands(ports);
  ports.Start();
  EXPECT_EQ(commands.Execute("touch 1122334455667788"), "error: ibutton has no port\n");
  EXPECT_EQ(commands.Execute("swipe"), "error: msr has no port\n");
  EXPECT_EQ(commands.Execute("unplug msr"), "error: msr has no port\n");
  EXPECT_EQ(commands.Execute("garbage 10"), "ok\n");
}

TEST(CommandsWithoutService, DevicesSendNothingBeforeTheFirstStart) {
  const ScratchDirectory directory;
  SaidLines said;
  EventLoop loop;
  DevicePorts ports(
      loop, {directory.path() / "ports", {"COM3"}, directory.path()}, [] { return DeviceSettings(); },
      said.Listener());
  Commands commands(ports);
  EXPECT_EQ(commands.Execute("touch 1122334455667788"), "error: the service QLXSVC is not running\n");
}

}  // namespace
}  // namespace qlx::sim
