// Run with the machine in a zone five hours behind: TZ=EST5.
#include "platform/local_time.h"

#include <gtest/gtest.h>

namespace qlx::platform {
namespace {

TEST(LocalTime, IsThatOfTheMachinesZone) {
  const std::tm time = LocalTime(1'000'000'000);  // 2001-09-09 01:46:40 UTC, a Sunday
  EXPECT_EQ(time.tm_year, 101);
  EXPECT_EQ(time.tm_mon, 8);
  EXPECT_EQ(time.tm_mday, 8);
  EXPECT_EQ(time.tm_hour, 20);
  EXPECT_EQ(time.tm_min, 46);
  EXPECT_EQ(time.tm_sec, 40);
  EXPECT_EQ(time.tm_wday, 6);
}

TEST(LocalTime, CountsTheDaysOfLeapYearsToo) {
  EXPECT_EQ(LocalTime(1'704'110'400).tm_yday, 0);    // 2024-01-01 12:00 UTC
  EXPECT_EQ(LocalTime(1'709'208'000).tm_yday, 59);   // 2024-02-29
  EXPECT_EQ(LocalTime(1'709'294'400).tm_yday, 60);   // 2024-03-01
  EXPECT_EQ(LocalTime(1'735'646'400).tm_yday, 365);  // 2024-12-31
  EXPECT_EQ(LocalTime(1'677'672'000).tm_yday, 59);   // 2023-03-01
}

TEST(LocalTime, GoesBackBefore1970) {
  const std::tm time = LocalTime(0);
  EXPECT_EQ(time.tm_year, 69);
  EXPECT_EQ(time.tm_hour, 19);
  EXPECT_EQ(LocalTime(-86'400).tm_mday, 30);
}

}  // namespace
}  // namespace qlx::platform
