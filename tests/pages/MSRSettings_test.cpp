#include "pages/MSRSettings.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/support/ConfigFile.h"

namespace qlx {
namespace {

constexpr auto kHead = WrapperSide::kHead;
constexpr auto kTail = WrapperSide::kTail;
const FatalEnd kThrow = [](const std::wstring& message) {
  throw std::runtime_error(platform::ToUtf8(message));
};

MSRSettings Loaded(const ConfigFile::Pairs& pairs, bool editable = true) {
  MSRSettings settings;
  settings.SetEditable(editable);
  std::vector<ConfigNode> nodes;
  for (const auto& [key, text] : pairs) nodes.push_back({key, text, {}, {}});
  settings.Load(nodes);
  return settings;
}

TEST(MSRSettings, StartsWithTheDefaultsOfANewFile) {
  const MSRSettings settings;
  EXPECT_EQ(settings.Text(1008), L"%");
  EXPECT_EQ(settings.Text(1009), L";");
  EXPECT_EQ(settings.Text(1010), L"+");
  EXPECT_EQ(settings.Text(1011), L"?");
  for (const int box : {1003, 1004, 1005}) EXPECT_TRUE(settings.Checked(box)) << box;
  for (const int box : {1002, 1006, 1007, 1016, 1017, 1018}) EXPECT_FALSE(settings.Checked(box)) << box;
  for (const WrapperSide side : {kHead, kTail}) {
    EXPECT_FALSE(settings.wrapper(side).on);
    EXPECT_FALSE(settings.wrapper(side).enabled);
  }
}

TEST(MSRSettings, ASentinelOfTwoCharactersIsIgnored) {
  EXPECT_EQ(Loaded({{L"Track1_Start_Sentinel", L"%%"}}).Text(1008), L"%");
  EXPECT_EQ(Loaded({{L"Track1_Start_Sentinel", L"\U0001F5A8"}}).Text(1008), L"%");
  EXPECT_EQ(Loaded({{L"Track1_Start_Sentinel", L"#"}}).Text(1008), L"#");
}

TEST(MSRSettings, AnEmptySentinelLeavesTheDefault) {
  EXPECT_EQ(Loaded({{L"End_Sentinel", L""}}).Text(1011), L"?");
}

TEST(MSRSettings, AHeadWrapperOf15CharactersIsIgnored) {
  const MSRSettings settings = Loaded({{L"Head_Wrapper", std::wstring(15, L'h')}});
  EXPECT_EQ(settings.Text(1014), L"");
  EXPECT_FALSE(settings.wrapper(kHead).on);
}

TEST(MSRSettings, AHeadWrapperOf14CharactersLocksTheTailOut) {
  const MSRSettings settings = Loaded({{L"Head_Wrapper", std::wstring(14, L'h')}, {L"Tail_Wrapper", L""}});
  EXPECT_TRUE(settings.wrapper(kHead).on);
  EXPECT_TRUE(settings.wrapper(kHead).enabled);
  EXPECT_FALSE(settings.wrapper(kTail).on);
  EXPECT_FALSE(settings.wrapper(kTail).enabled);
}

TEST(MSRSettings, AFullHeadWithATailFromTheFileLoadsWithBothOn) {
  const MSRSettings settings =
      Loaded({{L"Head_Wrapper", std::wstring(14, L'h')}, {L"Tail_Wrapper", L"tail"}});
  EXPECT_TRUE(settings.wrapper(kHead).on);
  EXPECT_TRUE(settings.wrapper(kTail).on);
  EXPECT_TRUE(settings.wrapper(kTail).enabled);
}

TEST(MSRSettings, AHeadTextOfFiveCharactersAllowsNineTailCharacters) {
  const MSRSettings settings = Loaded({{L"Head_Wrapper", L"12345"}});
  EXPECT_EQ(settings.wrapper(kTail).limit, 9U);
  EXPECT_EQ(settings.wrapper(kHead).limit, 14U);
}

TEST(MSRSettings, ADisabledWrapperStaysDisabledWhenTheFullOneShrinks) {
  MSRSettings settings = Loaded({{L"Tail_Wrapper", L"t"}});
  settings.ClickWrapper(kHead, true);
  settings.SetText(1014, std::wstring(14, L'h'));
  settings.SetText(1014, L"short");
  EXPECT_FALSE(settings.wrapper(kTail).on);
  EXPECT_FALSE(settings.wrapper(kTail).enabled);
  EXPECT_EQ(settings.wrapper(kTail).limit, 9U);
}

TEST(MSRSettings, CheckingAWrapperIsRefusedWhileTheOtherIsFull) {
  MSRSettings settings = Loaded({{L"Head_Wrapper", std::wstring(14, L'h')}});
  settings.ClickWrapper(kTail, true);
  EXPECT_FALSE(settings.wrapper(kTail).on);
  EXPECT_FALSE(settings.wrapper(kTail).enabled);
}

TEST(MSRSettings, UncheckingTheTailWrapperEmptiesItsText) {
  ConfigFile file(L"<MZP><MSR_Configuration><Tail_Wrapper>tail</Tail_Wrapper></MSR_Configuration></MZP>");
  MSRSettings settings;
  settings.Load(file.document().ReadSection(L"MSR_Configuration"));
  settings.ClickWrapper(kTail, false);
  EXPECT_FALSE(settings.wrapper(kTail).enabled);
  settings.Save(file.document(), kThrow);
  EXPECT_EQ(file.Value(L"MSR_Configuration", L"Tail_Wrapper"), L"");
}

TEST(MSRSettings, ACarriageReturnAfterEveryTrackExcludesThoseOfSingleTracks) {
  ConfigFile file(
      L"<MZP><MSR_Configuration><CR_Enabled>true</CR_Enabled>"
      L"<Track2_CR_Enabled>true</Track2_CR_Enabled></MSR_Configuration></MZP>");
  MSRSettings settings;
  settings.Load(file.document().ReadSection(L"MSR_Configuration"));
  EXPECT_TRUE(settings.Checked(1002));
  EXPECT_FALSE(settings.Checked(1017));
  EXPECT_FALSE(settings.track_returns_enabled());
  settings.Save(file.document(), kThrow);
  EXPECT_EQ(file.Value(L"MSR_Configuration", L"Track2_CR_Enabled"), L"");
}

TEST(MSRSettings, UncheckingTheCarriageReturnKeepsTheSingleTracksChecks) {
  MSRSettings settings = Loaded({{L"Track2_CR_Enabled", L"true"}});
  settings.ClickCarriageReturn(false);
  EXPECT_TRUE(settings.track_returns_enabled());
  EXPECT_TRUE(settings.Checked(1017));
}

TEST(MSRSettings, DefaultLeavesTheEnabledStateOfSingleTrackReturnsAlone) {
  MSRSettings settings = Loaded({{L"CR_Enabled", L"true"}});
  settings.SetDefaults();
  EXPECT_FALSE(settings.Checked(1002));
  EXPECT_FALSE(settings.track_returns_enabled());
}

TEST(MSRSettings, DefaultEmptiesAndDisablesBothWrappersAndRestoresTheirBudget) {
  MSRSettings settings = Loaded({{L"Head_Wrapper", L"head"}, {L"Tail_Wrapper", L"tail"}});
  settings.SetDefaults();
  for (const WrapperSide side : {kHead, kTail}) {
    EXPECT_FALSE(settings.wrapper(side).on);
    EXPECT_FALSE(settings.wrapper(side).enabled);
    EXPECT_EQ(settings.wrapper(side).limit, 14U);
  }
  EXPECT_EQ(settings.Text(1014), L"");
  EXPECT_EQ(settings.Text(1015), L"");
}

TEST(MSRSettings, APageThatMayNotBeChangedShowsTheCarriageReturnsAsTheFileHasThem) {
  const MSRSettings settings = Loaded({{L"CR_Enabled", L"true"}, {L"Track2_CR_Enabled", L"true"}}, false);
  EXPECT_TRUE(settings.Checked(1017));
}

TEST(MSRSettings, RawDataModeHasNoKey) {
  const MSRSettings settings;
  for (const SettingRow& row : settings.rows()) EXPECT_NE(row.control, MSRSettings::kRawData);
}

TEST(MSRSettings, SavesTheFifteenKeysInOrder) {
  ConfigFile file(L"<MZP><MSR_Configuration/></MZP>");
  MSRSettings settings;
  settings.SetText(MSRSettings::kEndSentinel, L"");
  settings.ClickWrapper(kHead, true);
  settings.SetText(MSRSettings::kHeadText, L" <\"h\"> ");
  settings.Save(file.document(), kThrow);
  EXPECT_EQ(file.Saved(L"MSR_Configuration"), (ConfigFile::Pairs{{L"CR_Enabled", L""},
                                                                 {L"Track1_Enabled", L"true"},
                                                                 {L"Track2_Enabled", L"true"},
                                                                 {L"Track3_Enabled", L"true"},
                                                                 {L"Strip_Sentinels", L""},
                                                                 {L"Hide_Error_Tracks", L""},
                                                                 {L"Track1_Start_Sentinel", L"%"},
                                                                 {L"Track2_Start_Sentinel", L";"},
                                                                 {L"Track3_Start_Sentinel", L"+"},
                                                                 {L"End_Sentinel", L""},
                                                                 {L"Head_Wrapper", L" <\"h\"> "},
                                                                 {L"Tail_Wrapper", L""},
                                                                 {L"Track1_CR_Enabled", L""},
                                                                 {L"Track2_CR_Enabled", L""},
                                                                 {L"Track3_CR_Enabled", L""}}));
}

}  // namespace
}  // namespace qlx
