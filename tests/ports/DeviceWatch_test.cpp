#include "ports/DeviceWatch.h"

#include <atomic>
#include <future>
#include <mutex>
#include <thread>

#include <gtest/gtest.h>

namespace qlx {
namespace {

constexpr std::chrono::milliseconds kShort{1};
constexpr auto kLimit = std::chrono::seconds(30);

/// What is plugged in, told by the test and looked at by the watch.
class Machine {
 public:
  void Plug(PresentDevices present) {
    const std::lock_guard guard(lock_);
    present_ = std::move(present);
  }

  PresentDevices Look() {
    ++looks_;
    const std::lock_guard guard(lock_);
    return present_;
  }

  /// Until that many more looks have begun.
  void AwaitLooks(int more) {
    const int wanted = looks_ + more;
    while (looks_ < wanted) std::this_thread::yield();
  }

  int looks() const { return looks_; }

 private:
  std::mutex lock_;
  PresentDevices present_;
  std::atomic<int> looks_ = 0;
};

TEST(DeviceWatch, TheFirstViewIsReportedAtOnceFromAnotherThread) {
  std::promise<std::pair<PresentDevices, std::thread::id>> reported;
  const DeviceWatch watch(
      [] {
        return PresentDevices{{L"COM3"}, {}};
      },
      [&](const PresentDevices& present) {
        reported.set_value({present, std::this_thread::get_id()});
      },
      std::chrono::hours(1));
  auto report = reported.get_future();
  ASSERT_EQ(report.wait_for(kLimit), std::future_status::ready);
  const auto [present, thread] = report.get();
  EXPECT_EQ(present, (PresentDevices{{L"COM3"}, {}}));
  EXPECT_NE(thread, std::this_thread::get_id());
}

TEST(DeviceWatch, OnlyAnotherViewIsReported) {
  Machine machine;
  std::vector<PresentDevices> reports;
  const PresentDevices first = {{L"COM3"}, {}};
  const PresentDevices second = {{L"COM3"}, {{0x1209, 1, L"CD0001", L"Drawer"}}};
  machine.Plug(first);
  {
    const DeviceWatch watch([&] { return machine.Look(); },
                            [&](const PresentDevices& present) { reports.push_back(present); }, kShort);
    machine.AwaitLooks(3);
    machine.Plug(second);
    machine.AwaitLooks(3);
    machine.Plug(first);
    machine.AwaitLooks(3);
  }
  EXPECT_EQ(reports, (std::vector{first, second, first}));
}

TEST(DeviceWatch, ItsEndCutsAPauseShortAndLooksNoMore) {
  Machine machine;
  {
    const DeviceWatch watch([&] { return machine.Look(); }, [](const PresentDevices&) {},
                            std::chrono::hours(1));
    while (machine.looks() < 1) std::this_thread::yield();
  }
  EXPECT_EQ(machine.looks(), 1);
}

TEST(DeviceWatch, AHundredEndOneAfterTheOther) {
  for (int i = 0; i < 100; ++i) {
    Machine machine;
    const DeviceWatch watch([&] { return machine.Look(); }, [](const PresentDevices&) {},
                            std::chrono::hours(1));
    while (machine.looks() < 1) std::this_thread::yield();
  }
}

TEST(DeviceWatch, ItsEndWaitsForALookThatHasBegun) {
  std::promise<void> begun;
  std::atomic<bool> over = false;
  {
    const DeviceWatch watch(
        [&] {
          begun.set_value();
          for (int turn = 0; turn < 10'000; ++turn) std::this_thread::yield();
          over = true;
          return PresentDevices{};
        },
        [](const PresentDevices&) {}, std::chrono::hours(1));
    begun.get_future().wait();
  }
  EXPECT_TRUE(over);
}

}  // namespace
}  // namespace qlx
