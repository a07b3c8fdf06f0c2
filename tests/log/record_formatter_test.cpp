#include <gtest/gtest.h>
#include <stdlib.h>

#include "log/RecordFormatter.h"
#include "log/levels.h"

namespace qlx {
namespace {

constexpr std::int64_t kNoon = 1794796067;  // 2026-11-16 02:27:47 UTC

class RecordFormatterTest : public testing::Test {
 protected:
  RecordFormatterTest() { setenv("TZ", "UTC0", 1); }

  LogRecord record_{MZP_PRINTER, LEVEL_ERROR, "CQLXConfigDlg::OnInit - text", {kNoon, 123}, 0x1f20, 0xa1c};
  RecordFormatter formatter_;
};

TEST_F(RecordFormatterTest, ANormalRecordIsSixFieldsBetweenTabsAndALineEnd) {
  EXPECT_EQ(formatter_.Format(record_),
            "16/11/2026 02:27:47.123\tP[0a1c]\tT[1f20]\tMZP_PRINTER    \tLEVEL_ERROR   \t"
            "CQLXConfigDlg::OnInit - text\r\n");
}

}  // namespace
}  // namespace qlx
