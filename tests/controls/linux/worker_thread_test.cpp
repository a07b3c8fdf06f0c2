#include <thread>

#include <gtest/gtest.h>
#include <wx/thread.h>

#include "controls/UiThreadCalls.h"
#include "tests/support/linux/NoThreads.h"

namespace qlx {
namespace {

TEST(WorkerThread, IsOneOfItsOwnWhereThereIsOne) {
  bool on_main = true;
  StartWorker([&] { on_main = wxIsMainThread(); }).join();
  EXPECT_FALSE(on_main);
}

TEST(WorkerThread, WithoutOneTheWorkIsDoneHereWithItsCalls) {
  UiThreadCalls calls;
  int steps = 0;
  const test::NoThreads none;
  const std::thread worker = StartWorker([&] {
    EXPECT_TRUE(calls.Run([&] { ++steps; }));
    EXPECT_EQ(steps, 1);
    EXPECT_TRUE(calls.Run([&] { ++steps; }));
  });
  EXPECT_FALSE(worker.joinable());
  EXPECT_EQ(steps, 2);
}

TEST(WorkerThread, WithoutOneACallAfterTheCloseIsLeftOut) {
  UiThreadCalls calls;
  calls.Close();
  const test::NoThreads none;
  const std::thread worker =
      StartWorker([&] { EXPECT_FALSE(calls.Run([] { ADD_FAILURE() << "ran after the close"; })); });
  EXPECT_FALSE(worker.joinable());
}

}  // namespace
}  // namespace qlx
