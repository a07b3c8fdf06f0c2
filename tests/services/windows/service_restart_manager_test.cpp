// The restart as a whole by a program of its own, over the system's service manager and two real services of
// the names that the tool restarts.
#include <fstream>

#include <gmock/gmock.h>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/windows/InstalledService.h"
#include "tests/support/windows/NamedLock.h"

namespace qlx {
namespace {

using test::ChildProcess;
using test::InstalledService;
using test::StubBehaviour;
using testing::ElementsAre;

using Lines = std::vector<std::string>;

constexpr auto kFrameworkFailed =
    "Quillon Framework Service failed to stop.|Restart Quillon services manually.";
constexpr auto kLoggingFailed = "Quillon Logging Service failed to stop.|Restart Quillon services manually.";

class ServiceRestartOverTheManager : public testing::Test {
 protected:
  /// Both running.
  void Install(StubBehaviour framework = StubBehaviour::kGood, StubBehaviour logging = StubBehaviour::kGood) {
    InstallStopped(framework, logging);
    logging_->Start();
    framework_->Start();
    std::filesystem::remove(journal_);
  }

  void InstallStopped(StubBehaviour framework = StubBehaviour::kGood,
                      StubBehaviour logging = StubBehaviour::kGood) {
    logging_.emplace(L"QLXLOGSVC", journal_, logging);
    framework_.emplace(L"QLXSVC", journal_, framework);
  }

  /// The rest of what the restart reports, to its end.
  static Lines Rest(ChildProcess& restart) {
    Lines lines;
    while (auto line = restart.ReadLine()) lines.push_back(*line);
    return lines;
  }

  static Lines Restart() {
    ChildProcess restart(QLX_RESTART_DRIVER);
    return Rest(restart);
  }

  /// What happened to the services, in its order.
  Lines Happened() const {
    Lines lines;
    std::ifstream file(journal_);
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
  }

  void ExpectBothRun() {
    EXPECT_TRUE(logging_->Await(SERVICE_RUNNING));
    EXPECT_TRUE(framework_->Await(SERVICE_RUNNING));
  }

  // There is one service of a name at a time.
  const test::NamedLock names_{L"QLXTestServices"};
  const test::TemporaryDirectory directory_;
  const std::filesystem::path journal_ = directory_.path() / "journal";
  std::optional<InstalledService> logging_;
  std::optional<InstalledService> framework_;
};

TEST_F(ServiceRestartOverTheManager, BothAreRestartedInTheStatedOrder) {
  Install();
  const DWORD before = framework_->process_id();
  EXPECT_THAT(Restart(),
              ElementsAre("progress 0", "progress 1", "Quillon services restarted.|", "progress 2"));
  ExpectBothRun();
  EXPECT_NE(framework_->process_id(), before);
  EXPECT_THAT(Happened(),
              ElementsAre("QLXSVC asked to stop", "QLXSVC stopped", "QLXLOGSVC asked to stop",
                          "QLXLOGSVC stopped", "QLXLOGSVC asked to start", "QLXSVC asked to start"));
}

TEST_F(ServiceRestartOverTheManager, StoppedServicesAreOnlyStartedLoggingFirst) {
  InstallStopped();
  EXPECT_THAT(Restart(),
              ElementsAre("progress 0", "progress 1", "Quillon services restarted.|", "progress 2"));
  ExpectBothRun();
  EXPECT_THAT(Happened(), ElementsAre("QLXLOGSVC asked to start", "QLXSVC asked to start"));
}

TEST_F(ServiceRestartOverTheManager, AServiceThatHangsWhileStoppingIsWaitedFor) {
  Install(StubBehaviour::kHangsStopping);
  ChildProcess restart(QLX_RESTART_DRIVER);
  EXPECT_EQ(restart.ReadLine(), "progress 0");
  ASSERT_TRUE(framework_->Await(SERVICE_STOP_PENDING));
  EXPECT_THAT(Happened(), ElementsAre("QLXSVC asked to stop"));
  framework_->LetGo();
  EXPECT_THAT(Rest(restart), ElementsAre("progress 1", "Quillon services restarted.|", "progress 2"));
  ExpectBothRun();
  EXPECT_THAT(Happened(),
              ElementsAre("QLXSVC asked to stop", "QLXSVC stopped", "QLXLOGSVC asked to stop",
                          "QLXLOGSVC stopped", "QLXLOGSVC asked to start", "QLXSVC asked to start"));
}

TEST_F(ServiceRestartOverTheManager, AFrameworkThatRefusesToStopLeavesBothRunning) {
  Install(StubBehaviour::kRefusesToStop);
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "Stop QLX Service GetLastError = 1052",
                                     kFrameworkFailed, "progress 2"));
  ExpectBothRun();
  EXPECT_THAT(Happened(), ElementsAre());
}

TEST_F(ServiceRestartOverTheManager, ALoggingThatRefusesToStopLeavesTheFrameworkStopped) {
  Install(StubBehaviour::kGood, StubBehaviour::kRefusesToStop);
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "Stop Log Service GetLastError = 1052",
                                     kLoggingFailed, "progress 2"));
  EXPECT_EQ(framework_->state(), DWORD{SERVICE_STOPPED});
  EXPECT_EQ(logging_->state(), DWORD{SERVICE_RUNNING});
}

TEST_F(ServiceRestartOverTheManager, ALoggingThatDoesNotStartLeavesBothStopped) {
  Install();
  logging_->Disable();
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "Start Log Service GetLastError = 1058",
                                     kLoggingFailed, "progress 2"));
  EXPECT_EQ(framework_->state(), DWORD{SERVICE_STOPPED});
  EXPECT_EQ(logging_->state(), DWORD{SERVICE_STOPPED});
}

TEST_F(ServiceRestartOverTheManager, AFrameworkWhoseProgramEndsAtOnceIsTold) {
  InstallStopped(StubBehaviour::kDies);
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "Start MZP Service GetLastError = 1053",
                                     kFrameworkFailed, "progress 2"));
  EXPECT_EQ(framework_->state(), DWORD{SERVICE_STOPPED});
  EXPECT_TRUE(logging_->Await(SERVICE_RUNNING));
}

TEST_F(ServiceRestartOverTheManager, AnAbsentLoggingServiceIsToldByItsStart) {
  Install();
  logging_.reset();
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "Start Log Service GetLastError = 1060",
                                     kLoggingFailed, "progress 2"));
  EXPECT_EQ(framework_->state(), DWORD{SERVICE_STOPPED});
}

TEST_F(ServiceRestartOverTheManager, WithoutBothServicesTheFirstStartIsTold) {
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "Start Log Service GetLastError = 1060",
                                     kLoggingFailed, "progress 2"));
}

}  // namespace
}  // namespace qlx
