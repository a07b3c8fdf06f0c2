#include "controls/UiThreadCalls.h"

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <wx/thread.h>

#include "tests/support/event_loop.h"

namespace qlx {
namespace {

TEST(UiThreadCalls, ACallRunsOnTheUserInterfaceThreadAndIsOverWhenRunReturns) {
  UiThreadCalls calls;
  bool on_main = false;
  std::atomic<bool> ran = false, over = false;
  std::thread worker([&] {
    ran = calls.Run([&] { on_main = wxIsMainThread(); });
    over = true;
  });
  EXPECT_TRUE(ServeUntil([&] { return over.load(); }));
  worker.join();
  EXPECT_TRUE(on_main);
  EXPECT_TRUE(ran);
}

TEST(UiThreadCalls, CallsOfOneWorkerRunInTheirOrder) {
  UiThreadCalls calls;
  std::vector<int> order;
  std::atomic<bool> over = false;
  std::thread worker([&] {
    for (int i = 0; i < 100; ++i) calls.Run([&order, i] { order.push_back(i); });
    over = true;
  });
  EXPECT_TRUE(ServeUntil([&] { return over.load(); }));
  worker.join();
  ASSERT_EQ(order.size(), 100U);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(UiThreadCalls, AWindowThatClosesLetsItsWaitingWorkersGo) {
  auto calls = std::make_unique<UiThreadCalls>();
  std::atomic<int> let_go = 0;
  std::vector<std::thread> workers;
  workers.reserve(4);
  for (int i = 0; i < 4; ++i) {
    workers.emplace_back([&, window = calls.get()] {
      if (!window->Run([] { ADD_FAILURE() << "ran after the close"; })) ++let_go;
    });
  }
  // No event is served before the close, so no call can have run.
  calls->Close();
  for (std::thread& worker : workers) worker.join();
  EXPECT_EQ(let_go, 4);
  calls.reset();
  wxTheApp->ProcessPendingEvents();
}

TEST(UiThreadCalls, AfterTheCloseACallReturnsAtOnce) {
  UiThreadCalls calls;
  calls.Close();
  bool ran = true;
  std::thread([&] { ran = calls.Run([] {}); }).join();
  EXPECT_FALSE(ran);
}

TEST(UiThreadCalls, APostedCallIsNotWaitedForAndRunsInItsTurn) {
  UiThreadCalls calls;
  std::vector<int> order;
  std::atomic<bool> posted = false;
  std::thread([&] {
    for (int i = 0; i < 3; ++i) calls.Post([&order, i] { order.push_back(i); });
    posted = true;
  }).join();
  EXPECT_TRUE(posted);
  EXPECT_TRUE(order.empty());
  EXPECT_TRUE(ServeUntil([&] { return order.size() == 3; }));
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(UiThreadCalls, APostedCallIsForgottenByTheClose) {
  UiThreadCalls calls;
  calls.Post([] { ADD_FAILURE() << "ran after the close"; });
  calls.Close();
  calls.Post([] { ADD_FAILURE() << "was taken after the close"; });
  wxTheApp->ProcessPendingEvents();
}

}  // namespace
}  // namespace qlx
