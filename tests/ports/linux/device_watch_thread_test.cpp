#include <gmock/gmock.h>

#include "ports/DeviceWatch.h"
#include "tests/support/linux/NoThreads.h"

namespace qlx {
namespace {

TEST(DeviceWatchThread, WithoutOneTheWatchLooksOnceAndReportsWhatItSaw) {
  int looks = 0;
  std::vector<PresentDevices> reports;
  {
    const test::NoThreads none;
    const DeviceWatch watch(
        [&] {
          ++looks;
          return PresentDevices{{L"COM3"}, {}};
        },
        [&](const PresentDevices& present) { reports.push_back(present); }, std::chrono::milliseconds(1));
  }
  EXPECT_EQ(looks, 1);
  EXPECT_THAT(reports, testing::ElementsAre(PresentDevices{{L"COM3"}, {}}));
}

}  // namespace
}  // namespace qlx
