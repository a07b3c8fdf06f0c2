#include "pages/IBSettings.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/support/ConfigFile.h"

namespace qlx {
namespace {

const FatalEnd kThrow = [](const std::wstring& message) {
  throw std::runtime_error(platform::ToUtf8(message));
};

IBSettings Loaded(const std::wstring& key, const std::wstring& text) {
  IBSettings settings;
  settings.Load({{key, text, {}, {}}});
  return settings;
}

constexpr wchar_t kEmptySection[] = L"<MZP><IB_Configuration/></MZP>";
constexpr wchar_t kZeros[] = L"00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";

TEST(IBSettings, StartsWithTheDefaultsOfANewFile) {
  const IBSettings settings;
  EXPECT_EQ(settings.Choice(IBSettings::kStart), 0);
  EXPECT_EQ(settings.Choice(IBSettings::kLength), 15);
  EXPECT_EQ(settings.Choice(IBSettings::kDelimiter), 3);
  EXPECT_EQ(settings.Text(IBSettings::kPrefix), L"");
  EXPECT_EQ(settings.Text(IBSettings::kSuffix), L"");
  EXPECT_EQ(settings.Text(IBSettings::kOnRemove), kZeros);
}

TEST(IBSettings, StartAndLengthCountFromOneInTheFile) {
  EXPECT_EQ(Loaded(L"ID_Start", L"16").Choice(IBSettings::kStart), 15);
  EXPECT_EQ(Loaded(L"ID_Start", L"1").Choice(IBSettings::kStart), 0);
  EXPECT_EQ(Loaded(L"ID_Length", L"2").Choice(IBSettings::kLength), 1);
}

TEST(IBSettings, AStartOrLengthOf0Or17LeavesNoSelection) {
  for (const wchar_t* text : {L"0", L"17", L"00", L"017"}) {
    EXPECT_EQ(Loaded(L"ID_Start", text).Choice(IBSettings::kStart), -1) << text;
    EXPECT_EQ(Loaded(L"ID_Length", text).Choice(IBSettings::kLength), -1) << text;
  }
}

TEST(IBSettings, AStartOrLengthBeyond17OrNoNumberLeavesTheDefault) {
  for (const wchar_t* text : {L"18", L"-1", L"", L"1x", L"99999999999"}) {
    EXPECT_EQ(Loaded(L"ID_Start", text).Choice(IBSettings::kStart), 0) << text;
    EXPECT_EQ(Loaded(L"ID_Length", text).Choice(IBSettings::kLength), 15) << text;
  }
}

TEST(IBSettings, TheDelimiterCountsFromZeroInTheFile) {
  EXPECT_EQ(Loaded(L"Delimiter", L"0").Choice(IBSettings::kDelimiter), 0);
  EXPECT_EQ(Loaded(L"Delimiter", L"4").Choice(IBSettings::kDelimiter), 4);
  for (const wchar_t* text : {L"5", L"-1", L"CR", L""}) {
    EXPECT_EQ(Loaded(L"Delimiter", text).Choice(IBSettings::kDelimiter), 3) << text;
  }
}

TEST(IBSettings, StoredBytesAreShownInPairs) {
  EXPECT_EQ(Loaded(L"Prefix", L"02").Text(IBSettings::kPrefix), L"02");
  EXPECT_EQ(Loaded(L"Suffix", L"0D0A").Text(IBSettings::kSuffix), L"0D 0A");
  EXPECT_EQ(Loaded(L"OnRemove", std::wstring(32, L'F')).Text(IBSettings::kOnRemove).size(), 47U);
}

TEST(IBSettings, StoredTextThatIsNoHexLoadsAsAnEmptyField) {
  for (const wchar_t* text : {L"2", L"0G", L"0d0a", L"\x661\x661"}) {
    EXPECT_EQ(Loaded(L"Prefix", text).Text(IBSettings::kPrefix), L"") << text;
    EXPECT_EQ(Loaded(L"OnRemove", text).Text(IBSettings::kOnRemove), L"") << text;
  }
}

TEST(IBSettings, AnEmptyOnRemoveIsShownEmpty) {
  EXPECT_EQ(Loaded(L"OnRemove", L"").Text(IBSettings::kOnRemove), L"");
}

TEST(IBSettings, MoreThan32StoredCharactersAreIgnored) {
  EXPECT_EQ(Loaded(L"OnRemove", std::wstring(34, L'0')).Text(IBSettings::kOnRemove), kZeros);
  EXPECT_EQ(Loaded(L"Prefix", std::wstring(33, L' ')).Text(IBSettings::kPrefix), L"");
}

TEST(IBSettings, KeysAreMatchedExactly) {
  EXPECT_EQ(Loaded(L"prefix", L"02").Text(IBSettings::kPrefix), L"");
  EXPECT_EQ(Loaded(L"Other", L"02").Text(IBSettings::kPrefix), L"");
}

TEST(IBSettings, DefaultsComeBackWholeAfterALoad) {
  IBSettings settings = Loaded(L"ID_Length", L"0");
  settings.SetText(IBSettings::kPrefix, L"41");
  settings.SetText(IBSettings::kOnRemove, L"");
  settings.SetDefaults();
  EXPECT_EQ(settings.Choice(IBSettings::kLength), 15);
  EXPECT_EQ(settings.Text(IBSettings::kPrefix), L"");
  EXPECT_EQ(settings.Text(IBSettings::kOnRemove), kZeros);
}

TEST(IBSettings, SavesItsKeysInTheirOrderAndWithoutBlanks) {
  ConfigFile file(kEmptySection);
  IBSettings settings;
  settings.SetText(IBSettings::kSuffix, L"0D 0A");
  settings.Save(file.document(), kThrow);
  const ConfigFile::Pairs expected = {{L"ID_Start", L"1"},  {L"ID_Length", L"16"},
                                      {L"Prefix", L""},     {L"Suffix", L"0D0A"},
                                      {L"Delimiter", L"3"}, {L"OnRemove", std::wstring(32, L'0')}};
  EXPECT_EQ(file.Saved(L"IB_Configuration"), expected);
}

TEST(IBSettings, WhatWasLoadedIsWrittenBackAsItWas) {
  ConfigFile file(L"<MZP><IB_Configuration><Prefix>0D0A</Prefix></IB_Configuration></MZP>");
  IBSettings settings;
  settings.Load(file.document().ReadSection(L"IB_Configuration"));
  settings.Save(file.document(), kThrow);
  EXPECT_EQ(file.Value(L"IB_Configuration", L"Prefix"), L"0D0A");
}

TEST(IBSettings, NoSelectionIsStoredAsZero) {
  ConfigFile file(kEmptySection);
  Loaded(L"ID_Start", L"17").Save(file.document(), kThrow);
  EXPECT_EQ(file.Value(L"IB_Configuration", L"ID_Start"), L"0");
}

TEST(IBSettings, SavingTestsNothingSoThatApplyAllStoresWhatStands) {
  ConfigFile file(kEmptySection);
  IBSettings settings;
  settings.SetText(IBSettings::kPrefix, L"9 41 100");
  settings.Save(file.document(), kThrow);
  EXPECT_EQ(file.Value(L"IB_Configuration", L"Prefix"), L"941100");
}

TEST(IBSettings, AnIndexThatNeedsMoreThanTwoDigitsEndsTheProgram) {
  ConfigFile file(kEmptySection);
  IBSettings settings;
  settings.SetChoice(IBSettings::kStart, 99);
  EXPECT_THROW(settings.Save(file.document(), kThrow), std::runtime_error);
}

struct Refused {
  int control;
  std::wstring message;
};

TEST(IBSettings, EachFieldHasItsOwnRefusal) {
  const Refused refusals[] = {
      {IBSettings::kPrefix, L"\"Prefix\" needs to be a valid hex string.\niButton settings NOT saved."},
      {IBSettings::kSuffix, L"\"Suffix\" needs to be a valid hex string.\niButton settings NOT saved."},
      {IBSettings::kOnRemove, L"\"On Remove\" needs to be a valid hex string.\niButton settings NOT saved."},
  };
  for (const Refused& refused : refusals) {
    IBSettings settings;
    EXPECT_FALSE(settings.FindRefusal());
    settings.SetText(refused.control, L"0D 4");
    const auto refusal = settings.FindRefusal();
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->control, refused.control);
    EXPECT_EQ(refusal->message, refused.message);
  }
}

TEST(IBSettings, ThePrefixIsRefusedBeforeTheOthers) {
  IBSettings settings;
  settings.SetText(IBSettings::kOnRemove, L"1");
  settings.SetText(IBSettings::kSuffix, L"1");
  settings.SetText(IBSettings::kPrefix, L"4");
  EXPECT_EQ(settings.FindRefusal()->control, IBSettings::kPrefix);
  settings.SetText(IBSettings::kPrefix, L"");
  EXPECT_EQ(settings.FindRefusal()->control, IBSettings::kSuffix);
}

TEST(AsciiToHex, GivesTheCodesWithBlanksBetween) {
  EXPECT_EQ(AsciiToHex(L""), L"");
  EXPECT_EQ(AsciiToHex(L"AB"), L"41 42");
  EXPECT_EQ(AsciiToHex(L"Hi!"), L"48 69 21");
  EXPECT_EQ(AsciiToHex(L" "), L"20");
}

TEST(AsciiToHex, ACodeHasAsManyDigitsAsItNeeds) {
  EXPECT_EQ(AsciiToHex(L"\tA\x20AC"), L"9 41 20AC");
  EXPECT_EQ(AsciiToHex(L"\xE9"), L"E9");
}

TEST(AsciiToHex, ACharacterOutsideTheBasicPlaneGivesItsTwoCodes) {
  EXPECT_EQ(AsciiToHex(L"\U0001F600"), L"D83D DE00");
}

}  // namespace
}  // namespace qlx
