// The restart as a whole, over a real bus to a service manager that answers as systemd does.
#include <cerrno>

#include <gmock/gmock.h>

#include "platform/linux/systemd_manager.h"
#include "tests/services/restart_doubles.h"
#include "tests/sim/PlayedServices.h"

namespace qlx {
namespace {

using sim::ActiveState;
using sim::PlayedServices;
using sim::UnitBehaviour;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::MatchesRegex;

constexpr milliseconds kPatient{20000};
constexpr milliseconds kShort{50};

constexpr auto kFrameworkFailed =
    "box Quillon Framework Service failed to stop.\nRestart Quillon services manually.";
constexpr auto kLoggingFailed =
    "box Quillon Logging Service failed to stop.\nRestart Quillon services manually.";
constexpr auto kRestarted = "information Quillon services restarted.\n";

class ServiceRestartOverTheBus : public testing::Test {
 protected:
  void Begin(milliseconds call_limit = kPatient) {
    restart_ = std::make_unique<ServiceRestart>(
        [call_limit] { return platform::OpenSystemdManager(call_limit); }, target_, RestartEnd::kAlways);
    restart_->Start();
  }

  const Happenings& End() {
    restart_.reset();
    return happened_;
  }

  const Happenings& Restart(milliseconds call_limit = kPatient) {
    Begin(call_limit);
    return End();
  }

  void ExpectRestarted() {
    EXPECT_THAT(End(), ElementsAre("progress 0", "progress 1", kRestarted, "progress 2"));
  }

  Happenings happened_;
  RecordingTarget target_{happened_};
  std::unique_ptr<ServiceRestart> restart_;
};

TEST_F(ServiceRestartOverTheBus, RestartsBothInTheStatedOrder) {
  PlayedServices played;
  Begin();
  ExpectRestarted();
  ASSERT_TRUE(played.said().Await("QLXSVC.service active", 2));
  EXPECT_THAT(
      played.said().All(),
      ElementsAre("QLXSVC.service active", "QLXLOGSVC.service active",  //
                  "QLXSVC.service asked to stop", "QLXSVC.service deactivating",
                  "QLXSVC.service inactive",  //
                  "QLXLOGSVC.service asked to stop", "QLXLOGSVC.service deactivating",
                  "QLXLOGSVC.service inactive",  //
                  "QLXLOGSVC.service asked to start", "QLXLOGSVC.service activating",
                  "QLXLOGSVC.service active",  //
                  "QLXSVC.service asked to start", "QLXSVC.service activating", "QLXSVC.service active"));
}

TEST_F(ServiceRestartOverTheBus, SlowServicesAreWaitedFor) {
  const UnitBehaviour slow{.start_takes = milliseconds(50), .stop_takes = milliseconds(50)};
  PlayedServices played(slow, slow);
  Begin();
  ExpectRestarted();
  EXPECT_TRUE(played.said().Await("QLXSVC.service active", 2));
  EXPECT_TRUE(played.said().Await("QLXLOGSVC.service active", 2));
}

TEST_F(ServiceRestartOverTheBus, AServiceThatHangsWhileStoppingIsWaitedForUntilItIsReleased) {
  PlayedServices played({.hang_stopping = true});
  Begin();
  ASSERT_TRUE(played.said().Await("QLXSVC.service deactivating"));
  EXPECT_TRUE(restart_->running());
  played.Release();
  ExpectRestarted();
  const auto said = played.said().All();
  EXPECT_LT(std::find(said.begin(), said.end(), "QLXSVC.service inactive"),
            std::find(said.begin(), said.end(), "QLXLOGSVC.service asked to stop"));
}

TEST_F(ServiceRestartOverTheBus, ServicesStoppedBeforehandAreOnlyStarted) {
  PlayedServices played({.stopped = true}, {.stopped = true});
  Begin();
  ExpectRestarted();
  const auto said = played.said().All();
  EXPECT_EQ(std::count(said.begin(), said.end(), "QLXSVC.service asked to stop"), 0);
}

TEST_F(ServiceRestartOverTheBus, AServiceThatFailsWhileStoppingIsStartedAgain) {
  PlayedServices played({.fail_stop = true});
  Begin();
  ExpectRestarted();
}

TEST_F(ServiceRestartOverTheBus, ARefusedStopOfTheFrameworkLeavesBothRunning) {
  PlayedServices played({.refuse_stop = true});
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "box Stop QLX Service GetLastError = 13",
                                     kFrameworkFailed, "progress 2"));
  EXPECT_EQ(played.framework_state(), ActiveState::kActive);
  EXPECT_EQ(played.logging_state(), ActiveState::kActive);
}

TEST_F(ServiceRestartOverTheBus, ARefusedStopOfTheLoggingLeavesTheFrameworkStopped) {
  PlayedServices played({}, {.refuse_stop = true});
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "box Stop Log Service GetLastError = 13",
                                     kLoggingFailed, "progress 2"));
  EXPECT_EQ(played.framework_state(), ActiveState::kInactive);
}

TEST_F(ServiceRestartOverTheBus, ARefusedStartOfTheLoggingLeavesTheFrameworkStopped) {
  PlayedServices played({}, {.refuse_start = true});
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "box Start Log Service GetLastError = 13",
                                     kLoggingFailed, "progress 2"));
  EXPECT_EQ(played.framework_state(), ActiveState::kInactive);
}

TEST_F(ServiceRestartOverTheBus, AFrameworkThatFailsToComeUpIsTold) {
  PlayedServices played({.fail_start = true});
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "box Start MZP Service GetLastError = 5",
                                     kFrameworkFailed, "progress 2"));
  EXPECT_EQ(played.framework_state(), ActiveState::kFailed);
}

TEST_F(ServiceRestartOverTheBus, AnUnknownLoggingServiceIsToldByItsStart) {
  PlayedServices played({}, {.missing = true});
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "box Start Log Service GetLastError = 2",
                                     kLoggingFailed, "progress 2"));
}

TEST_F(ServiceRestartOverTheBus, AManagerThatNeverAnswersEndsInTheTimeOutOfTheFirstStart) {
  PlayedServices played;
  played.FallSilent();
  EXPECT_THAT(Restart(kShort),
              ElementsAre("progress 0", "progress 1", "box Start Log Service GetLastError = 110",
                          kLoggingFailed, "progress 2"));
}

TEST_F(ServiceRestartOverTheBus, ABusLostByTheStopRequestFailsThatRequest) {
  PlayedServices played({.lose_bus = true});
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1",
                                     MatchesRegex("box Stop QLX Service GetLastError = [0-9]+"),
                                     kFrameworkFailed, "progress 2"));
}

TEST_F(ServiceRestartOverTheBus, ABusLostDuringTheWaitEndsItAndTheStartTellsTheError) {
  PlayedServices played({.hang_stopping = true});
  Begin();
  ASSERT_TRUE(played.said().Await("QLXSVC.service deactivating"));
  played.LoseBus();
  EXPECT_THAT(End(), ElementsAre("progress 0", "progress 1",
                                 MatchesRegex("box Start Log Service GetLastError = [0-9]+"), kLoggingFailed,
                                 "progress 2"));
}

TEST_F(ServiceRestartOverTheBus, WithoutABusTheStartTellsTheErrorOfConnecting) {
  setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
  EXPECT_THAT(Restart(), ElementsAre("progress 0", "progress 1", "box Start Log Service GetLastError = 2",
                                     kLoggingFailed, "progress 2"));
}

}  // namespace
}  // namespace qlx
