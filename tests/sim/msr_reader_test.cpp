#include <gtest/gtest.h>

#include "sim/MsrReader.h"

namespace qlx::sim {
namespace {

class MsrReaderTest : public testing::Test {
 protected:
  MsrReaderTest() {
    const std::string sentinels = "%;+";
    for (std::size_t i = 0; i < 3; ++i) settings_.tracks[i].start_sentinel = sentinels.substr(i, 1);
    settings_.end_sentinel = '?';
  }

  std::string Swipe(const Tracks& tracks = {"A", "2", "3"}) {
    reader_.Configure(settings_);
    return reader_.Swipe(tracks);
  }

  MsrSettings settings_;
  MsrReader reader_;
};

TEST_F(MsrReaderTest, SendsThreeTracksBetweenTheirSentinels) {
  EXPECT_EQ(Swipe(), "%A?;2?+3?");
}

TEST_F(MsrReaderTest, SendsTheConfiguredSentinels) {
  settings_.tracks[0].start_sentinel = '!';
  settings_.tracks[2].start_sentinel.clear();
  settings_.end_sentinel = '#';
  EXPECT_EQ(Swipe(), "!A#;2#3#");
}

TEST_F(MsrReaderTest, LeavesOutTheTracksThatAreNotEnabled) {
  settings_.tracks[1].enabled = false;
  EXPECT_EQ(Swipe(), "%A?+3?");
}

TEST_F(MsrReaderTest, StripsBothSentinels) {
  settings_.strip_sentinels = true;
  EXPECT_EQ(Swipe(), "A23");
}

TEST_F(MsrReaderTest, SendsAnErrorTrackForATrackThatCannotBeRead) {
  EXPECT_EQ(Swipe({"", "2", ""}), "%E?;2?+E?");
}

TEST_F(MsrReaderTest, HidesErrorTracks) {
  settings_.hide_error_tracks = true;
  EXPECT_EQ(Swipe({"", "2", ""}), ";2?");
}

TEST_F(MsrReaderTest, EndsEveryTrackWithACarriageReturnWhenAllHaveOne) {
  settings_.carriage_returns = true;
  EXPECT_EQ(Swipe(), "%A?\r;2?\r+3?\r");
}

TEST_F(MsrReaderTest, EndsSingleTracksWithACarriageReturn) {
  settings_.tracks[1].carriage_return = true;
  EXPECT_EQ(Swipe(), "%A?;2?\r+3?");
}

TEST_F(MsrReaderTest, WrapsTheWholeSwipeOnce) {
  settings_.head = "<head>";
  settings_.tail = "<tail>";
  EXPECT_EQ(Swipe(), "<head>%A?;2?+3?<tail>");
}

TEST_F(MsrReaderTest, SendsNotEvenTheWrappersWhenNoTrackIsLeft) {
  settings_.head = "<head>";
  settings_.hide_error_tracks = true;
  EXPECT_EQ(Swipe({}), "");
}

TEST_F(MsrReaderTest, TheTestCardHasThreeReadableTracks) {
  for (const std::string& track : TestCard()) EXPECT_GT(track.size(), 30U);
}

}  // namespace
}  // namespace qlx::sim
