#include <chrono>
#include <future>

#include <gtest/gtest.h>

#include "services/ServiceProbe.h"
#include "tests/services/restart_doubles.h"
#include "tests/support/linux/NoThreads.h"

namespace qlx {
namespace {

TEST(ServiceProbeThread, WithoutAThreadNothingIsAskedUntilThereIsOne) {
  std::map<std::string, ServiceScript> scripts;
  Happenings happened;
  std::promise<void> told;
  ServiceProbe probe([&] { return std::make_unique<ScriptedManager>(scripts, happened); },
                     [&](const ServiceStates&) { told.set_value(); });
  {
    const test::NoThreads none;
    EXPECT_FALSE(probe.Ask());
    EXPECT_FALSE(probe.Ask());
  }
  EXPECT_TRUE(probe.Ask());
  EXPECT_EQ(told.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

}  // namespace
}  // namespace qlx
