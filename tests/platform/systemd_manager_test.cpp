#include "platform/linux/systemd_manager.h"

#include <cerrno>

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "tests/sim/PlayedServices.h"

namespace qlx::platform {
namespace {

using sim::PlayedServices;
using std::chrono::milliseconds;
using testing::Optional;

/// Long enough for a loaded machine; no test waits for it.
constexpr milliseconds kPatient{20000};
/// For the tests that wait for it.
constexpr milliseconds kShort{50};

struct Opened {
  explicit Opened(milliseconds limit = kPatient, std::string_view name = "QLXSVC")
      : manager(OpenSystemdManager(limit)), service(manager->Open(name)) {}
  Service* operator->() const { return service.get(); }

  std::unique_ptr<ServiceManager> manager;
  std::unique_ptr<Service> service;
};

void UntilState(Service& service, ServiceState state) {
  while (service.QueryState() != state) {
  }
}

TEST(SystemdManager, AnActiveUnitIsRunning) {
  const PlayedServices played;
  EXPECT_THAT(Opened()->QueryState(), Optional(ServiceState::kRunning));
}

TEST(SystemdManager, AnInactiveUnitIsStopped) {
  const PlayedServices played({.stopped = true});
  EXPECT_THAT(Opened()->QueryState(), Optional(ServiceState::kStopped));
}

TEST(SystemdManager, AStoppedUnitReportsItSoonAfterTheRequest) {
  const PlayedServices played;
  const Opened service;
  EXPECT_EQ(service->RequestStop(), std::nullopt);
  UntilState(*service.service, ServiceState::kStopped);
}

TEST(SystemdManager, AFailedUnitIsStopped) {
  PlayedServices played({.fail_stop = true});
  const Opened service;
  service->RequestStop();
  ASSERT_TRUE(played.said().Await("QLXSVC.service failed"));
  EXPECT_THAT(service->QueryState(), Optional(ServiceState::kStopped));
}

TEST(SystemdManager, ADeactivatingUnitIsPending) {
  PlayedServices played({.hang_stopping = true});
  const Opened service;
  service->RequestStop();
  ASSERT_TRUE(played.said().Await("QLXSVC.service deactivating"));
  EXPECT_THAT(service->QueryState(), Optional(ServiceState::kPending));
  played.Release();
  EXPECT_THAT(service->QueryState(), Optional(ServiceState::kStopped));
}

TEST(SystemdManager, AnActivatingUnitIsPendingAndItsStartCountsAsDone) {
  PlayedServices played({.stopped = true, .hang_starting = true});
  const Opened service;
  EXPECT_EQ(service->Start(), std::nullopt);
  EXPECT_THAT(service->QueryState(), Optional(ServiceState::kPending));
}

TEST(SystemdManager, AUnitThatTakesItsTimeToStopIsPendingMeanwhile) {
  PlayedServices played({.stop_takes = milliseconds(100)});
  const Opened service;
  service->RequestStop();
  UntilState(*service.service, ServiceState::kPending);
  UntilState(*service.service, ServiceState::kStopped);
}

TEST(SystemdManager, AStartWhoseJobStillWaitsIsWaitedFor) {
  PlayedServices played({.queue_takes = milliseconds(100), .stopped = true});
  EXPECT_EQ(Opened()->Start(), std::nullopt);
  EXPECT_NE(played.framework_state(), sim::ActiveState::kInactive);
}

TEST(SystemdManager, AUnitThatFailsToComeUpIsAnInputOutputError) {
  const PlayedServices played({.stopped = true, .fail_start = true});
  EXPECT_THAT(Opened()->Start(), Optional(EIO));
}

TEST(SystemdManager, AStartDuringTheStopIsWaitedFor) {
  PlayedServices played({.stop_takes = milliseconds(50)});
  const Opened service;
  service->RequestStop();
  UntilState(*service.service, ServiceState::kPending);
  EXPECT_EQ(service->Start(), std::nullopt);
}

TEST(SystemdManager, ARefusedStopIsPermissionDenied) {
  const PlayedServices played({.refuse_stop = true});
  EXPECT_THAT(Opened()->RequestStop(), Optional(EACCES));
}

TEST(SystemdManager, ARefusedStartIsPermissionDenied) {
  const PlayedServices played({.stopped = true, .refuse_start = true});
  EXPECT_THAT(Opened()->Start(), Optional(EACCES));
}

TEST(SystemdManager, AnUnknownUnitHasNoStateAndCannotBeStarted) {
  const PlayedServices played({.missing = true});
  const Opened service;
  EXPECT_EQ(service->QueryState(), std::nullopt);
  EXPECT_THAT(service->Start(), Optional(ENOENT));
}

TEST(SystemdManager, ANameThatNoUnitCanHaveAnswersEveryCallWithTheErrorOfOpening) {
  const PlayedServices played;
  const Opened service(kPatient, "not/a/unit");
  EXPECT_EQ(service->QueryState(), std::nullopt);
  EXPECT_THAT(service->RequestStop(), Optional(EINVAL));
  EXPECT_THAT(service->Start(), Optional(EINVAL));
}

TEST(SystemdManager, ACallWithoutAnAnswerFailsOnceItsLimitIsOver) {
  PlayedServices played;
  const Opened service(kShort);
  played.FallSilent();
  EXPECT_EQ(service->QueryState(), std::nullopt);
  EXPECT_THAT(service->RequestStop(), Optional(ETIMEDOUT));
  EXPECT_THAT(service->Start(), Optional(ETIMEDOUT));
}

TEST(SystemdManager, AnOpeningWithoutAnAnswerFailsEveryCallWithTheTimeOut) {
  PlayedServices played;
  played.FallSilent();
  const Opened service(kShort);
  EXPECT_THAT(service->Start(), Optional(ETIMEDOUT));
  EXPECT_THAT(service->RequestStop(), Optional(ETIMEDOUT));
}

TEST(SystemdManager, EveryCallFailsAfterTheBusIsLost) {
  PlayedServices played;
  const Opened service;
  played.LoseBus();
  EXPECT_EQ(service->QueryState(), std::nullopt);
  EXPECT_TRUE(service->RequestStop());
  EXPECT_TRUE(service->Start());
}

TEST(SystemdManager, ABusThatIsLostDuringACallFailsThatCall) {
  const PlayedServices played({.lose_bus = true});
  EXPECT_THAT(Opened()->RequestStop(), Optional(ECONNRESET));
}

TEST(SystemdManager, WithoutABusEveryServiceAnswersWithTheErrorOfConnecting) {
  const sim::ScratchDirectory directory;
  setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + (directory.path() / "none").native()).c_str(), 1);
  const Opened service;
  EXPECT_EQ(service->QueryState(), std::nullopt);
  EXPECT_THAT(service->RequestStop(), Optional(ENOENT));
  EXPECT_THAT(service->Start(), Optional(ENOENT));
}

TEST(SystemdManager, ABusThatNeverGreetsFailsOnceTheLimitIsOver) {
  const sim::ScratchDirectory directory;
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  (directory.path() / "mute").native().copy(address.sun_path, sizeof address.sun_path - 1);
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener, 1), 0);
  setenv("DBUS_SYSTEM_BUS_ADDRESS", (std::string("unix:path=") + address.sun_path).c_str(), 1);
  EXPECT_THAT(Opened(kShort)->Start(), Optional(ETIMEDOUT));
  close(listener);
}

TEST(SystemdManager, ABusWithoutAServiceManagerIsAnUnreachableHost) {
  const sim::ScratchDirectory directory;
  const sim::BusDaemon bus(directory.path());
  setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().c_str(), 1);
  EXPECT_THAT(Opened()->Start(), Optional(EHOSTUNREACH));
}

TEST(SystemdManager, TheToolsOwnManagerIsTheOneOfTheSystemBus) {
  const PlayedServices played;
  const auto manager = OpenServiceManager();
  EXPECT_THAT(manager->Open("QLXLOGSVC")->QueryState(), Optional(ServiceState::kRunning));
}

}  // namespace
}  // namespace qlx::platform
