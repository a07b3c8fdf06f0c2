#include <algorithm>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>

#include "platform/linux/systemd_manager.h"
#include "tests/services/restart_doubles.h"
#include "tests/sim/SimulatorProcess.h"
#include "tests/sim/TcpClient.h"

namespace qlx::sim {
namespace {

using platform::ServiceState;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;
using testing::StartsWith;

class QlxsimTest : public testing::Test {
 protected:
  QlxsimTest() { WriteConfiguration(port_); }

  std::vector<std::string> Arguments(std::vector<std::string> more = {}) const {
    std::vector<std::string> all = {"--config",  configuration_.native(), "--dir", run_.native(),
                                    "--log-dir", logs_.native()};
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }

  /// Starts it, waits until it is ready and leads this process to its bus.
  void Start(std::vector<std::string> more = {}) {
    simulator_.emplace(Arguments(std::move(more)));
    ASSERT_TRUE(simulator_->said().Await("ready"));
    setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + (run_ / "bus").native()).c_str(), 1);
  }

  void WriteConfiguration(std::uint16_t port) const {
    std::ofstream(configuration_) << "<?xml version=\"1.0\"?>\n<MZP><Logging_Configuration>"
                                  << "<File_Name>C:\\logs\\suite.log</File_Name><File_Size>1</File_Size>"
                                  << "<TCP_Port>" << port << "</TCP_Port></Logging_Configuration></MZP>\n";
  }

  std::string Log() const {
    std::ifstream file(logs_ / "suite.log", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// What a restart by the tool reports.
  static Happenings Restart() {
    Happenings happened;
    RecordingTarget target(happened);
    ServiceRestart(platform::OpenServiceManager, target, RestartEnd::kAlways).Start();
    return happened;
  }

  ScratchDirectory directory_;
  std::filesystem::path configuration_ = directory_.path() / "QLXConfig.xml";
  std::filesystem::path run_ = directory_.path() / "run";
  std::filesystem::path logs_ = directory_.path() / "logs";
  std::uint16_t port_ = FreePort();
  std::optional<SimulatorProcess> simulator_;
};

const Happenings kRestartedWell = {"progress 0", "progress 1", "information Quillon services restarted.\n",
                                   "progress 2"};

TEST_F(QlxsimTest, SaysItsEnvironmentBeforeItIsReadyAndWritesTheSameIntoAFile) {
  Start();
  std::ifstream file(run_ / "environment");
  std::string line;
  ASSERT_TRUE(std::getline(file, line));
  EXPECT_THAT(line, StartsWith("export DBUS_SYSTEM_BUS_ADDRESS='unix:path="));
  const auto said = simulator_->said().All();
  EXPECT_LT(std::find(said.begin(), said.end(), line), std::find(said.begin(), said.end(), "ready"));
}

class QlxsimEnd : public QlxsimTest, public testing::WithParamInterface<int> {};

TEST_P(QlxsimEnd, TheSignalIsACleanEndThatLeavesNothing) {
  Start();
  const pid_t bus = simulator_->Child();
  ASSERT_GT(bus, 0);
  EXPECT_THAT(simulator_->End(GetParam()), Optional(0));
  EXPECT_NE(kill(bus, 0), 0);
  EXPECT_TRUE(std::filesystem::is_empty(run_));
  EXPECT_FALSE(TcpClient(port_).connected());
}

INSTANTIATE_TEST_SUITE_P(Signals, QlxsimEnd, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_F(QlxsimTest, AKilledSimulatorTakesItsBusWithItAndItsDirectoryCanBeUsedAgain) {
  Start();
  const pid_t bus = simulator_->Child();
  EXPECT_EQ(simulator_->End(SIGKILL), std::nullopt);
  for (int tries = 0; tries < 1000 && kill(bus, 0) == 0; ++tries) usleep(10000);
  EXPECT_NE(kill(bus, 0), 0);
  Start();
  EXPECT_EQ(Restart(), kRestartedWell);
}

TEST_F(QlxsimTest, ASecondSimulatorInTheSameDirectoryIsRefused) {
  Start();
  SimulatorProcess second(Arguments());
  EXPECT_THAT(second.End(0), Optional(1));
  EXPECT_THAT(second.said().All(), Contains(HasSubstr("another simulator")));
  EXPECT_EQ(Restart(), kRestartedWell);
}

TEST_F(QlxsimTest, TheToolRestartsItsServicesInTheirOrder) {
  Start();
  EXPECT_EQ(Restart(), kRestartedWell);
  ASSERT_TRUE(simulator_->said().Await("QLXSVC.service active", 2));
  auto said = simulator_->said().All();
  std::erase_if(said, [](const std::string& line) { return !line.ends_with("active"); });
  EXPECT_THAT(said,
              ElementsAre("QLXLOGSVC.service active", "QLXSVC.service active", "QLXSVC.service inactive",
                          "QLXLOGSVC.service inactive", "QLXLOGSVC.service active", "QLXSVC.service active"));
}

TEST_F(QlxsimTest, TheLogServiceWritesTheFileThatTheConfigurationNames) {
  Start();
  EXPECT_TRUE(TcpClient(port_).Send("record\r\n"));
  ASSERT_TRUE(simulator_->said().Await("log record from 1: record"));
  EXPECT_EQ(Log(), "record\r\n");
}

TEST_F(QlxsimTest, ARestartMovesTheLogServiceToAChangedPort) {
  Start();
  const std::uint16_t moved = FreePort();
  WriteConfiguration(moved);
  EXPECT_FALSE(TcpClient(moved).connected());
  EXPECT_EQ(Restart(), kRestartedWell);
  EXPECT_TRUE(TcpClient(moved).Send("moved\r\n"));
  EXPECT_TRUE(simulator_->said().Await("log record from 1: moved"));
  EXPECT_FALSE(TcpClient(port_).connected());
}

TEST_F(QlxsimTest, TheLogServiceListensOnlyWhileItsServiceRuns) {
  Start();
  const auto manager = platform::OpenServiceManager();
  const auto service = manager->Open("QLXLOGSVC");
  service->RequestStop();
  ASSERT_TRUE(simulator_->said().Await("QLXLOGSVC.service inactive"));
  EXPECT_FALSE(TcpClient(port_).connected());
}

TEST_F(QlxsimTest, ALogPortInUseLetsTheLoggingServiceFail) {
  Start();
  ScratchDirectory other;
  SimulatorProcess second({"--config", configuration_.native(), "--dir", other.path().native()});
  EXPECT_TRUE(second.said().Await("ready"));
  EXPECT_THAT(second.said().All(), Contains("QLXLOGSVC.service failed"));
}

TEST_F(QlxsimTest, AStopCanBeRefused) {
  Start({"--refuse-stop", "QLXSVC"});
  EXPECT_THAT(Restart(), Contains("box Stop QLX Service GetLastError = 13"));
}

TEST_F(QlxsimTest, AStartCanBeRefused) {
  Start({"--refuse-start=QLXLOGSVC"});
  EXPECT_THAT(Restart(), Contains("box Start Log Service GetLastError = 13"));
}

TEST_F(QlxsimTest, AStartCanFail) {
  Start({"--fail-start", "QLXSVC"});
  EXPECT_THAT(Restart(), Contains("box Start MZP Service GetLastError = 5"));
}

TEST_F(QlxsimTest, AStopCanEndInFailed) {
  Start({"--fail-stop", "QLXSVC", "--fail-stop", "QLXLOGSVC"});
  EXPECT_EQ(Restart(), kRestartedWell);
  EXPECT_THAT(simulator_->said().All(),
              AllOf(Contains("QLXSVC.service failed"), Contains("QLXLOGSVC.service failed")));
}

TEST_F(QlxsimTest, AServiceCanBeStoppedAtTheBeginning) {
  Start({"--stopped", "QLXLOGSVC"});
  EXPECT_FALSE(TcpClient(port_).connected());
  EXPECT_EQ(Restart(), kRestartedWell);
  EXPECT_TRUE(TcpClient(port_).connected());
}

TEST_F(QlxsimTest, AServiceCanBeMissing) {
  Start({"--missing", "QLXLOGSVC"});
  EXPECT_THAT(Restart(), Contains("box Start Log Service GetLastError = 2"));
}

TEST_F(QlxsimTest, TheBusCanBeLost) {
  Start({"--lose-bus", "QLXSVC"});
  EXPECT_THAT(Restart(), Contains(StartsWith("box Stop QLX Service GetLastError = ")));
  EXPECT_TRUE(simulator_->said().Await("bus lost"));
}

TEST_F(QlxsimTest, AServiceCanHangWhileItStops) {
  Start({"--hang-stopping", "QLXSVC"});
  const auto manager = platform::OpenServiceManager();
  const auto service = manager->Open("QLXSVC");
  service->RequestStop();
  ASSERT_TRUE(simulator_->said().Await("QLXSVC.service deactivating"));
  EXPECT_THAT(service->QueryState(), Optional(ServiceState::kPending));
}

TEST_F(QlxsimTest, AServiceCanHangWhileItStarts) {
  Start({"--stopped", "QLXSVC", "--hang-starting", "QLXSVC"});
  const auto manager = platform::OpenServiceManager();
  const auto service = manager->Open("QLXSVC");
  EXPECT_EQ(service->Start(), std::nullopt);
  EXPECT_THAT(service->QueryState(), Optional(ServiceState::kPending));
}

TEST_F(QlxsimTest, TheManagerCanStaySilent) {
  Start({"--never-answer"});
  const auto manager = platform::OpenSystemdManager(std::chrono::milliseconds(50));
  EXPECT_THAT(manager->Open("QLXSVC")->Start(), Optional(ETIMEDOUT));
}

TEST_F(QlxsimTest, AToolThatWaitsForAHangingServiceCanStillBeEnded) {
  Start({"--hang-stopping", "QLXSVC"});
  const pid_t tool = fork();
  if (tool == 0) {
    dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
    execl(DRIVER_PATH, DRIVER_PATH, nullptr);
    _exit(127);
  }
  ASSERT_TRUE(simulator_->said().Await("QLXSVC.service deactivating"));
  kill(tool, SIGTERM);
  int status = 0;
  waitpid(tool, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status));
}

TEST_F(QlxsimTest, SlowServicesAreWaitedFor) {
  Start({"--stop-takes", "50", "--start-takes", "50"});
  EXPECT_EQ(Restart(), kRestartedWell);
}

TEST_F(QlxsimTest, AConfigurationThatDoesNotExistYetLeavesTheDefaults) {
  std::filesystem::remove(configuration_);
  simulator_.emplace(Arguments());
  ASSERT_TRUE(simulator_->said().Await("ready"));
  EXPECT_THAT(simulator_->said().All(), Contains(HasSubstr("port 38674")));
}

TEST(QlxsimArguments, HelpExplainsTheOptionsAndIsNoFailure) {
  SimulatorProcess simulator({"--help"});
  EXPECT_THAT(simulator.End(0), Optional(0));
  EXPECT_THAT(simulator.said().All(), Contains(HasSubstr("--refuse-stop")));
}

TEST(QlxsimArguments, AnUnknownServiceIsRefused) {
  SimulatorProcess simulator({"--config", "x", "--dir", "y", "--stopped", "OTHER"});
  EXPECT_THAT(simulator.End(0), Optional(testing::Ne(0)));
  EXPECT_THAT(simulator.said().All(), Contains(HasSubstr("OTHER not in")));
}

TEST(QlxsimArguments, ADirectoryThatCannotBeMadeIsNamed) {
  SimulatorProcess simulator({"--config", "x", "--dir", "/proc/none"});
  EXPECT_THAT(simulator.End(0), Optional(1));
  EXPECT_THAT(simulator.said().All(), Contains(HasSubstr("/proc/none")));
}

TEST(QlxsimArguments, ADirectoryTooDeepForASocketIsToldSo) {
  const ScratchDirectory directory;
  const auto deep = directory.path() / std::string(110, 'd');
  SimulatorProcess simulator({"--config", "x", "--dir", deep.native()});
  EXPECT_THAT(simulator.End(0), Optional(1));
  EXPECT_THAT(simulator.said().All(), Contains(HasSubstr("too long for a socket")));
}

}  // namespace
}  // namespace qlx::sim
