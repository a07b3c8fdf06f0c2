// The service manager's words for services made for the test. Each has a name of its own, so that tests may
// run side by side.
#include "platform/service_control.h"

#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/windows/InstalledService.h"

namespace qlx::platform {
namespace {

using test::InstalledService;
using test::StubBehaviour;

class ServiceControl : public testing::Test {
 protected:
  std::wstring name() const { return directory_.path().filename().wstring(); }
  std::filesystem::path journal() const { return directory_.path() / "journal"; }

  /// The service as the code under test sees it.
  std::unique_ptr<Service> Open() const { return manager_->Open(ToUtf8(name())); }

  const test::TemporaryDirectory directory_;
  const std::unique_ptr<ServiceManager> manager_ = OpenServiceManager();
};

TEST_F(ServiceControl, AStoppedServiceIsStartedAndRuns) {
  const InstalledService installed(name(), journal());
  const auto service = Open();
  EXPECT_EQ(service->QueryState(), ServiceState::kStopped);
  EXPECT_EQ(service->Start(), std::nullopt);
  EXPECT_TRUE(installed.Await(SERVICE_RUNNING));
  EXPECT_EQ(service->QueryState(), ServiceState::kRunning);
}

TEST_F(ServiceControl, WhoOnlyLooksIsToldTheStateAndMayNotChangeIt) {
  InstalledService installed(name(), journal());
  installed.Start();
  const auto manager = OpenServiceManagerToLook();
  const auto service = manager->Open(ToUtf8(name()));
  EXPECT_EQ(service->QueryState(), ServiceState::kRunning);
  EXPECT_EQ(service->RequestStop(), ERROR_ACCESS_DENIED);
  EXPECT_EQ(service->QueryState(), ServiceState::kRunning);
}

TEST_F(ServiceControl, ARunningServiceStopsWhenAsked) {
  InstalledService installed(name(), journal());
  installed.Start();
  const auto service = Open();
  EXPECT_EQ(service->RequestStop(), std::nullopt);
  EXPECT_TRUE(installed.Await(SERVICE_STOPPED));
  EXPECT_EQ(service->QueryState(), ServiceState::kStopped);
}

TEST_F(ServiceControl, AServiceCanBeStartedAtOnceWhenItHasReportedItsStop) {
  InstalledService installed(name(), journal());
  installed.Start();
  const auto service = Open();
  for (int round = 0; round < 10; ++round) {
    ASSERT_EQ(service->RequestStop(), std::nullopt);
    while (service->QueryState() != ServiceState::kStopped) {
    }
    ASSERT_EQ(service->Start(), std::nullopt);
    ASSERT_TRUE(installed.Await(SERVICE_RUNNING));
  }
}

TEST_F(ServiceControl, AStopIsNotWaitedForAndIsPendingMeanwhile) {
  InstalledService installed(name(), journal(), StubBehaviour::kHangsStopping);
  installed.Start();
  const auto service = Open();
  EXPECT_EQ(service->RequestStop(), std::nullopt);
  EXPECT_TRUE(installed.Await(SERVICE_STOP_PENDING));
  EXPECT_EQ(service->QueryState(), ServiceState::kPending);
}

TEST_F(ServiceControl, AStartIsPendingUntilTheServiceRuns) {
  InstalledService installed(name(), journal(), StubBehaviour::kHangsStarting);
  const auto service = Open();
  EXPECT_EQ(service->Start(), std::nullopt);
  EXPECT_EQ(service->QueryState(), ServiceState::kPending);
  installed.LetGo();
  EXPECT_TRUE(installed.Await(SERVICE_RUNNING));
}

TEST_F(ServiceControl, AServiceThatDoesNotTakeAStopRefusesWithThatError) {
  InstalledService installed(name(), journal(), StubBehaviour::kRefusesToStop);
  installed.Start();
  EXPECT_EQ(Open()->RequestStop(), ERROR_INVALID_SERVICE_CONTROL);
  EXPECT_EQ(installed.state(), DWORD{SERVICE_RUNNING});
}

TEST_F(ServiceControl, AStopOfAStoppedServiceIsAnError) {
  const InstalledService installed(name(), journal());
  EXPECT_EQ(Open()->RequestStop(), ERROR_SERVICE_NOT_ACTIVE);
}

TEST_F(ServiceControl, AStartOfARunningServiceFindsWhatItWanted) {
  InstalledService installed(name(), journal());
  installed.Start();
  EXPECT_EQ(Open()->Start(), std::nullopt);
}

TEST_F(ServiceControl, AStartOfAServiceThatIsStillStoppingIsAnError) {
  InstalledService installed(name(), journal(), StubBehaviour::kHangsStopping);
  installed.Start();
  const auto service = Open();
  service->RequestStop();
  EXPECT_TRUE(installed.Await(SERVICE_STOP_PENDING));
  EXPECT_EQ(service->Start(), ERROR_SERVICE_ALREADY_RUNNING);
}

TEST_F(ServiceControl, ADisabledServiceDoesNotStart) {
  InstalledService installed(name(), journal());
  installed.Disable();
  EXPECT_EQ(Open()->Start(), ERROR_SERVICE_DISABLED);
}

TEST_F(ServiceControl, AServiceWithoutItsProgramDoesNotStart) {
  InstalledService installed(name(), journal());
  installed.LoseProgram();
  EXPECT_EQ(Open()->Start(), ERROR_FILE_NOT_FOUND);
}

TEST_F(ServiceControl, AServiceWhoseProgramEndsAtOnceDoesNotStart) {
  const InstalledService installed(name(), journal(), StubBehaviour::kDies);
  EXPECT_EQ(Open()->Start(), ERROR_SERVICE_REQUEST_TIMEOUT);
  EXPECT_EQ(Open()->QueryState(), ServiceState::kStopped);
}

TEST_F(ServiceControl, AnUnknownServiceHasNoStateAndAnswersWithTheErrorOfOpeningIt) {
  const auto service = Open();
  SetLastError(ERROR_SUCCESS);
  EXPECT_EQ(service->QueryState(), std::nullopt);
  EXPECT_EQ(service->RequestStop(), ERROR_SERVICE_DOES_NOT_EXIST);
  EXPECT_EQ(service->Start(), ERROR_SERVICE_DOES_NOT_EXIST);
}

TEST_F(ServiceControl, AClosedServiceCanBeDeletedAndItsNameUsedAgain) {
  {
    const InstalledService installed(name(), journal());
    Open()->QueryState();
  }
  EXPECT_NO_THROW(InstalledService(name(), journal()));
}

}  // namespace
}  // namespace qlx::platform
