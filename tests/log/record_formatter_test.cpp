#include "tests/log/RecordFormatterTest.h"

namespace qlx {
namespace {

using test::kMoment;
using test::RecordFormatterTest;

TEST_F(RecordFormatterTest, ANormalRecordIsSixFieldsBetweenTabsAndALineEnd) {
  EXPECT_EQ(formatter_.Format(record_),
            "16/11/2026 02:27:47.123\tP[0a1c]\tT[1f20]\tMZP_PRINTER    \tLEVEL_ERROR   \ttext\r\n");
}

TEST_F(RecordFormatterTest, AContinuationRecordIs72BlanksAndTheText) {
  record_.module |= kContinuation;
  EXPECT_EQ(formatter_.Format(record_), std::string(72, ' ') + "text\r\n");
}

TEST_F(RecordFormatterTest, MillisecondsHaveThreeDigits) {
  EXPECT_EQ(Time(kMoment, 0), "16/11/2026 02:27:47.000");
  EXPECT_EQ(Time(kMoment, 7), "16/11/2026 02:27:47.007");
  EXPECT_EQ(Time(kMoment, 45), "16/11/2026 02:27:47.045");
  EXPECT_EQ(Time(kMoment, 999), "16/11/2026 02:27:47.999");
}

TEST_F(RecordFormatterTest, TheDateFollowsTheSecondForwardsAndBackwards) {
  EXPECT_EQ(Time(kMoment, 999), "16/11/2026 02:27:47.999");
  EXPECT_EQ(Time(kMoment + 1, 0), "16/11/2026 02:27:48.000");
  EXPECT_EQ(Time(kMoment + 86400, 0), "17/11/2026 02:27:47.000");
  EXPECT_EQ(Time(kMoment, 1), "16/11/2026 02:27:47.001");
}

TEST_F(RecordFormatterTest, TheFirstSecondOf1970AndTheOneBeforeHaveDates) {
  EXPECT_EQ(Time(0, 0), "01/01/1970 00:00:00.000");
  EXPECT_EQ(Time(-1, 0), "31/12/1969 23:59:59.000");
}

TEST_F(RecordFormatterTest, IdentifiersAreLowerCaseHexOfAtLeastFourDigits) {
  record_.process_id = 1;
  record_.thread_id = 0xDEADBEEF;
  EXPECT_EQ(Field(1), "P[0001]");
  EXPECT_EQ(Field(2), "T[deadbeef]");
}

TEST_F(RecordFormatterTest, EveryModuleHasItsNameInFifteenColumns) {
  const std::pair<std::uint32_t, std::string> names[] = {
      {0x001, "MZP_DRIVER     "}, {0x002, "MZP_SERVICE    "}, {0x004, "MZP_IOBUS      "},
      {0x008, "MZP_MSRUSB     "}, {0x010, "MZP_CDUSB      "}, {0x020, "MZP_LDUSB      "},
      {0x040, "MZP_IBUTTONUSB "}, {0x080, "MZP_CDPCI      "}, {0x100, "MZP_PRINTER    "}};
  for (const auto& [flag, name] : names) {
    record_.module = flag;
    EXPECT_EQ(Field(3), name);
  }
}

TEST_F(RecordFormatterTest, AnUnknownModulePrintsAnEmptyName) {
  for (const std::uint32_t module : {0x200U, 0x003U, 0x101U, 0x7FFFFFFFU}) {
    record_.module = module;
    EXPECT_EQ(Field(3), "");
  }
}

TEST_F(RecordFormatterTest, EveryLevelHasItsNameInFourteenColumns) {
  const std::string names[] = {"LEVEL_ERROR   ", "LEVEL_WARNING ", "LEVEL_INFO    ", "LEVEL_VERBOSE ",
                               "LEVEL_TRACE   "};
  for (std::uint32_t level = LEVEL_ERROR; level <= LEVEL_TRACE; ++level) {
    record_.level = level;
    EXPECT_EQ(Field(4), names[level - 1]);
  }
}

TEST_F(RecordFormatterTest, TheTextIsKeptToTheByte) {
  record_.text = "\tA\xFF\x80\n%s";
  EXPECT_EQ(
      formatter_.Format(record_),
      "16/11/2026 02:27:47.123\tP[0a1c]\tT[1f20]\tMZP_PRINTER    \tLEVEL_ERROR   \t\tA\xFF\x80\n%s\r\n");
}

}  // namespace
}  // namespace qlx
