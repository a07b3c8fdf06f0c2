#include <cerrno>

#include <gmock/gmock.h>

#include "services/ServiceRestart.h"
#include "tests/services/restart_doubles.h"
#include "tests/support/linux/NoThreads.h"

namespace qlx {
namespace {

using testing::ElementsAre;

class ServiceRestartThread : public testing::Test {
 protected:
  ServiceRestart::OpenManager Manager() {
    return [this] { return std::make_unique<ScriptedManager>(scripts_, happened_); };
  }

  std::map<std::string, ServiceScript> scripts_;
  Happenings happened_;
  RecordingTarget target_{happened_};
  const std::string error_ = "box Stop QLX Service GetLastError = " + std::to_string(EAGAIN);
  const std::string failed_ =
      "box Quillon Framework Service failed to stop.\nRestart Quillon services manually.";
};

TEST_F(ServiceRestartThread, WithoutAThreadTheFirstStepHasFailedAndNoServiceIsTouched) {
  ServiceRestart restart(Manager(), target_, RestartEnd::kAlways);
  const test::NoThreads none;
  EXPECT_TRUE(restart.Start());
  EXPECT_FALSE(restart.running());
  EXPECT_THAT(happened_, ElementsAre("progress 0", "progress 1", error_, failed_, "progress 2"));
}

TEST_F(ServiceRestartThread, WithoutAThreadAPageThatStaysOpenIsNotTakenForFinished) {
  ServiceRestart restart(Manager(), target_, RestartEnd::kOnSuccess);
  const test::NoThreads none;
  EXPECT_TRUE(restart.Start());
  EXPECT_THAT(happened_, ElementsAre("progress 0", "progress 1", error_, failed_));
}

TEST_F(ServiceRestartThread, TheNextRestartFindsAThreadAgain) {
  {
    ServiceRestart restart(Manager(), target_, RestartEnd::kAlways);
    {
      const test::NoThreads none;
      restart.Start();
    }
    happened_.clear();
    EXPECT_TRUE(restart.Start());
  }
  EXPECT_THAT(happened_, testing::Contains("information Quillon services restarted.\n"));
}

}  // namespace
}  // namespace qlx
