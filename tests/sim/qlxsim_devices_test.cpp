#include <csignal>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <pty.h>

#include "platform/linux/systemd_manager.h"
#include "sim/control_client.h"
#include "tests/sim/SimulatorProcess.h"
#include "tests/sim/TcpClient.h"
#include "tests/sim/TtyClient.h"

namespace qlx::sim {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::Optional;
using testing::StartsWith;

class QlxsimDevices : public testing::Test {
 protected:
  QlxsimDevices() { Assign("COM3"); }

  /// The configuration with the reader on `port` and the printer on COM4.
  void Assign(const std::string& port) const {
    std::ofstream(configuration_) << "<MZP><Ports_Configuration><MSR_USB>" << port
                                  << "</MSR_USB><PRINTER_USB>COM4</PRINTER_USB></Ports_Configuration>"
                                  << "<Logging_Configuration><TCP_Port>" << port_
                                  << "</TCP_Port></Logging_Configuration></MZP>";
  }
  void Start(const std::vector<std::string>& more = {}) {
    std::vector<std::string> all = {"--config", configuration_.native(), "--dir", run_.native()};
    all.insert(all.end(), more.begin(), more.end());
    simulator_.emplace(all);
    ASSERT_TRUE(simulator_->said().Await("ready"));
  }
  std::string Ask(const std::string& command) const { return AskSimulator(run_ / "control", command); }
  std::filesystem::path Link(const char* port) const { return run_ / "ports" / ("MZP_" + std::string(port)); }

  ScratchDirectory directory_;
  std::filesystem::path configuration_ = directory_.path() / "QLXConfig.xml";
  std::filesystem::path run_ = directory_.path() / "run";
  std::uint16_t port_ = FreePort();
  std::optional<SimulatorProcess> simulator_;
};

TEST_F(QlxsimDevices, TheEnvironmentNamesThePortsAndTheControlSocket) {
  Start();
  std::ifstream file(run_ / "environment");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  EXPECT_THAT(text, HasSubstr("export QUILLON_PORT_DIR='" + (run_ / "ports").native() + "'\n"));
  EXPECT_THAT(text, HasSubstr("export QLXSIM_CONTROL='" + (run_ / "control").native() + "'\n"));
}

TEST_F(QlxsimDevices, ThereAreEightPortsUnlessOthersAreNamed) {
  Start();
  const std::string status = Ask("status");
  EXPECT_EQ(std::ranges::count(status, '\n'), 9);
  EXPECT_THAT(status, AllOf(StartsWith("COM3 msr"), HasSubstr("\nCOM10 none")));
}

TEST_F(QlxsimDevices, ThePortsCanBeNamedAndEachIsMadeOnce) {
  Start({"--ports", "COM12,COM3,COM12"});
  EXPECT_EQ(Ask("status"), "COM12 none plugged\nCOM3 msr plugged\nok\n");
}

TEST_F(QlxsimDevices, ACleanEndLeavesNoLinkAndNoSocket) {
  Start();
  EXPECT_THAT(simulator_->End(SIGTERM), Optional(0));
  EXPECT_FALSE(std::filesystem::exists(run_ / "ports"));
  EXPECT_FALSE(std::filesystem::exists(run_ / "control"));
}

TEST_F(QlxsimDevices, AKilledSimulatorsDirectoryCanBeUsedAgain) {
  Start();
  const pid_t bus = simulator_->Child();
  simulator_->End(SIGKILL);
  // The old bus removes its socket when it ends.
  for (int tries = 0; tries < 1000 && kill(bus, 0) == 0; ++tries) usleep(10000);
  EXPECT_TRUE(std::filesystem::is_symlink(Link("COM10")));
  Start({"--ports", "COM3"});
  EXPECT_FALSE(std::filesystem::is_symlink(Link("COM10")));
  EXPECT_EQ(Ask("swipe"), "ok\n");
}

TEST_F(QlxsimDevices, ARestartOfTheServiceMovesADevice) {
  Start();
  Assign("COM5");
  EXPECT_THAT(Ask("status"), HasSubstr("COM3 msr"));
  setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + (run_ / "bus").native()).c_str(), 1);
  const auto manager = platform::OpenServiceManager();
  const auto service = manager->Open("QLXSVC");
  service->RequestStop();
  ASSERT_TRUE(simulator_->said().Await("QLXSVC.service inactive"));
  EXPECT_EQ(Ask("swipe"), "error: the service QLXSVC is not running\n");
  service->Start();
  ASSERT_TRUE(simulator_->said().Await("QLXSVC.service active", 2));
  EXPECT_THAT(Ask("status"), AllOf(HasSubstr("COM3 none"), HasSubstr("COM5 msr")));
}

TEST_F(QlxsimDevices, AServiceThatIsStoppedAtTheBeginningHasNoDevices) {
  Start({"--stopped", "QLXSVC"});
  EXPECT_THAT(Ask("status"), StartsWith("COM3 none plugged\n"));
  EXPECT_EQ(Ask("swipe"), "error: the service QLXSVC is not running\n");
}

TEST_F(QlxsimDevices, AConfigurationThatDoesNotExistYetLeavesEveryPortEmpty) {
  std::filesystem::remove(configuration_);
  Start();
  EXPECT_THAT(Ask("status"), Not(HasSubstr("msr")));
}

TEST_F(QlxsimDevices, AReceiptIsKeptBesideTheLog) {
  const auto logs = directory_.path() / "logs";
  Start({"--log-dir", logs.native()});
  TtyClient(Link("COM4")).Write("receipt");
  ASSERT_TRUE(simulator_->said().Await("printer: receipt of 7 bytes kept as receipt-1.bin"));
  EXPECT_EQ(std::filesystem::file_size(logs / "receipt-1.bin"), 7U);
}

TEST_F(QlxsimDevices, ThePrinterIsTheNamedOneFromTheStart) {
  Start({"--printer", "other-type"});
  const TtyClient program(Link("COM4"));
  program.Write("\x1D\x49\x01");
  EXPECT_EQ(program.Read(33)[19], 8);
}

TEST_F(QlxsimDevices, AHundredUnplugsUnderAFloodLeaveNoDescriptor) {
  Start();
  const std::string process = std::to_string(simulator_->process());
  ASSERT_EQ(Ask("status").substr(0, 8), "COM3 msr");
  const std::ptrdiff_t before = OpenDescriptors(process);
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(Ask("flood msr on"), "ok\n");
    const TtyClient program(Link("COM3"));
    ASSERT_EQ(Ask("unplug msr"), "ok\n");
    ASSERT_TRUE(program.AwaitHangUp());
    ASSERT_EQ(Ask("plug msr"), "ok\n");
  }
  for (int tries = 0; tries < 1000 && OpenDescriptors(process) > before; ++tries) usleep(10000);
  EXPECT_EQ(OpenDescriptors(process), before);
  EXPECT_EQ(Ask("send msr 78"), "ok\n");
  EXPECT_EQ(TtyClient(Link("COM3")).Read(1), "x");
}

TEST_F(QlxsimDevices, TheProgramGivesACommandToTheOneThatRuns) {
  Start({"--ports", "COM3"});
  SimulatorProcess client({"--control", (run_ / "control").native(), "status"});
  EXPECT_THAT(client.End(0), Optional(0));
  EXPECT_THAT(client.said().All(), ElementsAre("COM3 msr plugged", "ok"));
}

TEST_F(QlxsimDevices, ACommandThatIsRefusedIsAnExitCode) {
  Start();
  SimulatorProcess client({"--control", (run_ / "control").native(), "send", "msr", "0g"});
  EXPECT_THAT(client.End(0), Optional(1));
  EXPECT_THAT(client.said().All(), ElementsAre(StartsWith("error: the bytes")));
}

TEST_F(QlxsimDevices, ACommandWithoutASimulatorNamesTheSocket) {
  SimulatorProcess client({"--control", (run_ / "control").native(), "status"});
  EXPECT_THAT(client.End(0), Optional(1));
  EXPECT_THAT(client.said().All(), Contains(HasSubstr((run_ / "control").native())));
}

TEST_F(QlxsimDevices, ThePersonAtTheTerminalHasAPrompt) {
  int terminal = -1;
  int input = -1;
  ASSERT_EQ(openpty(&terminal, &input, nullptr, nullptr, nullptr), 0);
  const int before = dup(STDIN_FILENO);
  dup2(input, STDIN_FILENO);
  Start({"--ports", "COM3"});
  dup2(before, STDIN_FILENO);
  const std::string typed = "\nstatus\nfrob\n";
  ASSERT_EQ(write(terminal, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
  EXPECT_TRUE(simulator_->said().Await("qlxsim> qlxsim> COM3 msr plugged"));
  EXPECT_TRUE(simulator_->said().Await("qlxsim> error: there is no command frob: try help"));
  close(input);
  close(terminal);
  close(before);
  EXPECT_EQ(Ask("swipe"), "ok\n");
}

TEST(QlxsimDeviceArguments, APortHasAName) {
  for (const char* name : {"COM", "com3", "COM3x", "LPT1", "../COM3", "COM123456"}) {
    SimulatorProcess simulator({"--config", "x", "--dir", "y", "--ports", name});
    EXPECT_THAT(simulator.End(0), Optional(testing::Ne(0)));
    EXPECT_THAT(simulator.said().All(), Contains(HasSubstr("is no port name")));
  }
}

TEST(QlxsimDeviceArguments, APrinterIsOneOfThoseThatThereAre) {
  SimulatorProcess simulator({"--config", "x", "--dir", "y", "--printer", "frob"});
  EXPECT_THAT(simulator.End(0), Optional(testing::Ne(0)));
  EXPECT_THAT(simulator.said().All(), Contains(AllOf(HasSubstr("frob not in"), HasSubstr("many-pages"))));
}

TEST(QlxsimDeviceArguments, AConfigurationAndADirectoryAreNeeded) {
  SimulatorProcess simulator({"--config", "x"});
  EXPECT_THAT(simulator.End(0), Optional(testing::Ne(0)));
  EXPECT_THAT(simulator.said().All(), Contains(HasSubstr("--config and --dir")));
}

TEST(QlxsimDeviceArguments, AClientNeedsACommandAndACommandASocket) {
  SimulatorProcess client({"--control", "x"});
  EXPECT_THAT(client.End(0), Optional(testing::Ne(0)));
  SimulatorProcess command({"--config", "x", "--dir", "y", "swipe"});
  EXPECT_THAT(command.End(0), Optional(testing::Ne(0)));
}

}  // namespace
}  // namespace qlx::sim
