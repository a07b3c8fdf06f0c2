#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>

#include <gtest/gtest.h>

#include "services/ServiceProbe.h"
#include "tests/services/restart_doubles.h"

namespace qlx {
namespace {

using platform::ServiceState;
using State = std::optional<ServiceState>;

constexpr std::chrono::seconds kLimit{30};
constexpr auto kRunning = ServiceState::kRunning;
constexpr auto kStopped = ServiceState::kStopped;
constexpr auto kPending = ServiceState::kPending;

std::wstring Words(State logging, State framework) {
  return InEnglish(ServicesMessage({logging, framework}));
}

TEST(ServicesMessage, NamesTheStateThatBothServicesAreIn) {
  EXPECT_EQ(Words(kRunning, kRunning), L"Services: running");
  EXPECT_EQ(Words(kStopped, kStopped), L"Services: stopped");
}

TEST(ServicesMessage, NamesTheOneThatIsStopped) {
  EXPECT_EQ(Words(kRunning, kStopped), L"Services: QLXSVC stopped");
  EXPECT_EQ(Words(kStopped, kRunning), L"Services: QLXLOGSVC stopped");
}

TEST(ServicesMessage, TellsThatOneIsOnItsWay) {
  EXPECT_EQ(Words(kRunning, kPending), L"Services: starting or stopping");
  EXPECT_EQ(Words(kPending, kStopped), L"Services: starting or stopping");
}

TEST(ServicesMessage, IsUnknownAsLongAsOneServiceIs) {
  EXPECT_EQ(Words(std::nullopt, std::nullopt), L"Services: unknown");
  EXPECT_EQ(Words(kRunning, std::nullopt), L"Services: unknown");
  EXPECT_EQ(Words(std::nullopt, kPending), L"Services: unknown");
}

/// A manager whose opening lasts until it is let go, and services that answer with `states`.
class ServiceProbeTest : public testing::Test {
 protected:
  ServiceProbe::OpenManager Manager() {
    return [this]() -> std::unique_ptr<platform::ServiceManager> {
      opened_.set_value();
      let_go_.get_future().wait();
      return std::make_unique<ScriptedManager>(scripts_, happened_);
    };
  }

  std::promise<void> opened_;
  std::promise<void> let_go_;
  Happenings happened_;
  std::map<std::string, ServiceScript> scripts_;
};

TEST_F(ServiceProbeTest, TellsEachServiceItsOwnState) {
  scripts_["QLXLOGSVC"].states = {kPending};
  scripts_["QLXSVC"].states = {kRunning};
  let_go_.set_value();
  std::promise<ServiceStates> told;
  ServiceProbe probe(Manager(), [&](const ServiceStates& states) { told.set_value(states); });
  EXPECT_TRUE(probe.Ask());
  auto answer = told.get_future();
  ASSERT_EQ(answer.wait_for(kLimit), std::future_status::ready);
  const ServiceStates states = answer.get();
  EXPECT_EQ(states.logging, kPending);
  EXPECT_EQ(states.framework, kRunning);
}

TEST_F(ServiceProbeTest, AsksOnceAtATimeAndAgainAfterTheAnswer) {
  std::atomic<int> answers = 0;
  std::atomic<int> questions = 0;
  ServiceProbe probe(
      [&]() -> std::unique_ptr<platform::ServiceManager> {
        if (++questions == 1) let_go_.get_future().wait();
        return std::make_unique<ScriptedManager>(scripts_, happened_);
      },
      [&](const ServiceStates&) { ++answers; });
  EXPECT_TRUE(probe.Ask());
  EXPECT_FALSE(probe.Ask());
  let_go_.set_value();
  const auto deadline = std::chrono::steady_clock::now() + kLimit;
  while (!probe.Ask() && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  while (answers < 2 && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  EXPECT_EQ(answers, 2);
  EXPECT_EQ(questions, 2);
}

TEST_F(ServiceProbeTest, AnswersEveryOneOfManyQuestions) {
  std::mutex lock;
  std::condition_variable answered;
  int answers = 0;
  ServiceProbe probe([this] { return std::make_unique<ScriptedManager>(scripts_, happened_); },
                     [&](const ServiceStates&) {
                       const std::lock_guard guard(lock);
                       ++answers;
                       answered.notify_one();
                     });
  for (int question = 1; question <= 300; ++question) {
    while (!probe.Ask()) std::this_thread::yield();  // until the last thread has let the question go
    std::unique_lock guard(lock);
    ASSERT_TRUE(answered.wait_for(guard, kLimit, [&] { return answers == question; })) << question;
  }
}

TEST_F(ServiceProbeTest, GoesAwayWhileTheManagerHangsAndIsToldNothingMore) {
  auto gone = std::make_shared<std::promise<void>>();
  auto manager_gone = gone->get_future();
  bool told = false;
  {
    // The manager's function is destroyed with the last of the probe and its thread.
    const std::shared_ptr<void> last(nullptr, [gone](void*) { gone->set_value(); });
    ServiceProbe probe([open = Manager(), last] { return open(); },
                       [&](const ServiceStates&) { told = true; });
    EXPECT_TRUE(probe.Ask());
    ASSERT_EQ(opened_.get_future().wait_for(kLimit), std::future_status::ready);
  }
  let_go_.set_value();
  ASSERT_EQ(manager_gone.wait_for(kLimit), std::future_status::ready);
  EXPECT_FALSE(told);
}

}  // namespace
}  // namespace qlx
