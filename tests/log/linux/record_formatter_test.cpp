// The time zone, which a process may change here while it runs.
#include "tests/log/RecordFormatterTest.h"
#include "tests/support/environment.h"

namespace qlx {
namespace {

using test::kMoment;
using test::SetEnvironment;

class RecordFormatterInOtherZones : public test::RecordFormatterTest {
 public:
  RecordFormatterInOtherZones() = default;
  RecordFormatterInOtherZones(const RecordFormatterInOtherZones&) = delete;
  RecordFormatterInOtherZones& operator=(const RecordFormatterInOtherZones&) = delete;
  ~RecordFormatterInOtherZones() override { SetEnvironment("TZ", "UTC0"); }
};

TEST_F(RecordFormatterInOtherZones, TheTimeIsLocalAndFollowsTheChangeToSummerTime) {
  SetEnvironment("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
  EXPECT_EQ(Time(1774745999, 0), "29/03/2026 01:59:59.000");
  EXPECT_EQ(Time(1774746000, 0), "29/03/2026 03:00:00.000");
}

TEST_F(RecordFormatterInOtherZones, AChangedTimeZoneShowsFromTheNextSecondOn) {
  Time(kMoment, 0);
  SetEnvironment("TZ", "EST5");
  EXPECT_EQ(Time(kMoment + 1, 0), "15/11/2026 21:27:48.000");
}

}  // namespace
}  // namespace qlx
