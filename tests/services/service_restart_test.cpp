#include <algorithm>
#include <future>

#include <gmock/gmock.h>

#include "services/ServiceRestart.h"
#include "tests/services/restart_doubles.h"

namespace qlx {
namespace {

using platform::ServiceState;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

constexpr auto kFrameworkFailed =
    "box Quillon Framework Service failed to stop.\nRestart Quillon services manually.";
constexpr auto kLoggingFailed =
    "box Quillon Logging Service failed to stop.\nRestart Quillon services manually.";
constexpr auto kRestarted = "information Quillon services restarted.\n";

class ServiceRestartTest : public testing::Test {
 protected:
  ServiceRestartTest() {
    framework_.states = {ServiceState::kRunning};
    logging_.states = {ServiceState::kRunning};
  }

  ServiceRestart::OpenManager Manager() {
    return [this] { return std::make_unique<ScriptedManager>(scripts_, happened_); };
  }

  /// Everything that happened in one whole restart, in its order.
  const Happenings& Restart(RestartEnd end = RestartEnd::kAlways) {
    ServiceRestart(Manager(), target_, end).Start();
    return happened_;
  }

  /// What the user saw and the services were asked for, less opening and closing.
  Happenings Seen(RestartEnd end = RestartEnd::kAlways) {
    Happenings seen = Restart(end);
    std::erase_if(seen, [](const std::string& what) {
      return what.starts_with("open ") || what.starts_with("close ");
    });
    return seen;
  }

  Happenings happened_;
  std::map<std::string, ServiceScript> scripts_;
  ServiceScript& framework_ = scripts_["QLXSVC"];
  ServiceScript& logging_ = scripts_["QLXLOGSVC"];
  RecordingTarget target_{happened_};
};

TEST_F(ServiceRestartTest, StopsTheFrameworkFirstAndStartsTheLoggingFirst) {
  EXPECT_THAT(Restart(),
              ElementsAre("progress 0", "open QLXLOGSVC", "open QLXSVC", "stop QLXSVC", "stop QLXLOGSVC",
                          "start QLXLOGSVC", "start QLXSVC", "progress 1", kRestarted, "close QLXLOGSVC",
                          "close QLXSVC", "close manager", "progress 2"));
}

TEST_F(ServiceRestartTest, ServicesAlreadyStoppedAreNotAskedToStopAndBothAreStartedLoggingFirst) {
  framework_.states = logging_.states = {ServiceState::kStopped};
  EXPECT_THAT(Seen(), ElementsAre("progress 0", "start QLXLOGSVC", "start QLXSVC", "progress 1", kRestarted,
                                  "progress 2"));
}

TEST_F(ServiceRestartTest, AFrameworkServiceThatRefusesToStopGivesTwoBoxesAndNoStartAndTheToolCloses) {
  framework_.stop_error = 13;
  EXPECT_THAT(Seen(), ElementsAre("progress 0", "stop QLXSVC", "progress 1",
                                  "box Stop QLX Service GetLastError = 13", kFrameworkFailed, "progress 2"));
}

TEST_F(ServiceRestartTest, ALoggingServiceThatRefusesToStopGivesTwoBoxesAndNoStart) {
  logging_.stop_error = 13;
  EXPECT_THAT(Seen(), ElementsAre("progress 0", "stop QLXSVC", "stop QLXLOGSVC", "progress 1",
                                  "box Stop Log Service GetLastError = 13", kLoggingFailed, "progress 2"));
}

TEST_F(ServiceRestartTest, ALoggingServiceThatCannotStartLeavesTheFrameworkStoppedAndSpeaksOfAFailureToStop) {
  logging_.start_error = 2;
  EXPECT_THAT(Seen(),
              ElementsAre("progress 0", "stop QLXSVC", "stop QLXLOGSVC", "start QLXLOGSVC", "progress 1",
                          "box Start Log Service GetLastError = 2", kLoggingFailed, "progress 2"));
}

TEST_F(ServiceRestartTest, AFrameworkServiceThatCannotStartSpeaksOfAFailureToStopToo) {
  framework_.start_error = 110;
  EXPECT_THAT(Seen(), ElementsAre("progress 0", "stop QLXSVC", "stop QLXLOGSVC", "start QLXLOGSVC",
                                  "start QLXSVC", "progress 1", "box Start MZP Service GetLastError = 110",
                                  kFrameworkFailed, "progress 2"));
}

TEST_F(ServiceRestartTest, TheHandlesAreClosedBeforeTheEndIsToldAfterAFailureToo) {
  framework_.stop_error = 13;
  const Happenings& all = Restart();
  const Happenings last(all.end() - 4, all.end());
  EXPECT_THAT(last, ElementsAre("close QLXLOGSVC", "close QLXSVC", "close manager", "progress 2"));
}

TEST_F(ServiceRestartTest, AStopIsWaitedForUntilTheServiceReportsIt) {
  framework_.states = {ServiceState::kRunning};
  framework_.states.insert(framework_.states.end(), 3, ServiceState::kRunning);
  framework_.states.insert(framework_.states.end(), 1000, ServiceState::kPending);
  EXPECT_THAT(Seen(), Contains(kRestarted));
  EXPECT_EQ(framework_.queries, 1005);
}

TEST_F(ServiceRestartTest, APendingServiceIsWaitedForWithoutBeingAskedToStop) {
  logging_.states.assign(5, ServiceState::kPending);
  EXPECT_THAT(Seen(), AllOf(Not(Contains("stop QLXLOGSVC")), Contains(kRestarted)));
  EXPECT_EQ(logging_.queries, 6);
}

// Wanted: only the first query decides whether the service is asked to stop.
TEST_F(ServiceRestartTest, AServiceThatFinishesStartingMeanwhileIsStillNotAskedToStop) {
  framework_.states = {ServiceState::kPending, ServiceState::kRunning, ServiceState::kRunning};
  EXPECT_THAT(Seen(), Not(Contains("stop QLXSVC")));
}

TEST_F(ServiceRestartTest, TheLoggingServiceIsNotTouchedBeforeTheFrameworkHasStopped) {
  framework_.states.assign(3, ServiceState::kRunning);
  framework_.stop_error = 5;
  Restart();
  EXPECT_EQ(logging_.queries, 0);
}

TEST_F(ServiceRestartTest, AServiceThatCannotBeQueriedCountsAsStoppedAndItsStartTellsTheError) {
  logging_.states.assign(2, std::nullopt);
  logging_.start_error = 2;
  EXPECT_THAT(Seen(), ElementsAre("progress 0", "stop QLXSVC", "start QLXLOGSVC", "progress 1",
                                  "box Start Log Service GetLastError = 2", kLoggingFailed, "progress 2"));
}

TEST_F(ServiceRestartTest, AQueryThatFailsDuringTheWaitEndsTheWait) {
  framework_.states = {ServiceState::kRunning, ServiceState::kPending, std::nullopt};
  Restart();
  EXPECT_EQ(framework_.queries, 3);
}

TEST_F(ServiceRestartTest, APageThatWantsTheEndOnSuccessGetsItAfterASuccess) {
  EXPECT_EQ(Seen(RestartEnd::kOnSuccess).back(), "progress 2");
}

TEST_F(ServiceRestartTest, APageThatWantsTheEndOnSuccessGetsOnlyProgress1AfterAFailure) {
  framework_.start_error = 5;
  const Happenings seen = Seen(RestartEnd::kOnSuccess);
  EXPECT_THAT(seen, Contains("progress 1"));
  EXPECT_THAT(seen, Not(Contains("progress 2")));
}

TEST_F(ServiceRestartTest, ASecondStartIsRefusedWhileOneRuns) {
  std::promise<void> go;
  target_.before_progress = [&, gate = go.get_future().share()](int) { gate.wait(); };
  {
    ServiceRestart restart(Manager(), target_, RestartEnd::kAlways);
    EXPECT_TRUE(restart.Start());
    EXPECT_TRUE(restart.running());
    EXPECT_FALSE(restart.Start());
    go.set_value();
  }
  EXPECT_EQ(std::count(happened_.begin(), happened_.end(), "progress 0"), 1);
}

TEST_F(ServiceRestartTest, AFurtherStartRunsAgainOnceTheFirstIsOver) {
  {
    ServiceRestart restart(Manager(), target_, RestartEnd::kAlways);
    restart.Start();
    while (restart.running()) std::this_thread::yield();
    EXPECT_TRUE(restart.Start());
  }
  EXPECT_EQ(std::count(happened_.begin(), happened_.end(), kRestarted), 2);
}

TEST_F(ServiceRestartTest, ItStillRunsWhileTheEndIsBeingHandled) {
  ServiceRestart restart(Manager(), target_, RestartEnd::kAlways);
  bool ran = false;
  target_.before_progress = [&](int state) { ran = state == 2 && restart.running(); };
  restart.Start();
  while (restart.running()) std::this_thread::yield();
  EXPECT_TRUE(ran);
}

TEST_F(ServiceRestartTest, DestructionWaitsForTheWorker) {
  std::promise<void> go;
  target_.before_progress = [&, gate = go.get_future().share()](int) { gate.wait(); };
  auto restart = std::make_unique<ServiceRestart>(Manager(), target_, RestartEnd::kAlways);
  restart->Start();
  auto destroyed = std::async(std::launch::async, [&] { restart.reset(); });
  EXPECT_EQ(destroyed.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  go.set_value();
  destroyed.get();
  EXPECT_EQ(happened_.back(), "progress 2");
}

TEST_F(ServiceRestartTest, ARestartThatNeverStartedEndsWithoutAReport) {
  { const ServiceRestart never_started(Manager(), target_, RestartEnd::kAlways); }
  EXPECT_TRUE(happened_.empty());
}

}  // namespace
}  // namespace qlx
