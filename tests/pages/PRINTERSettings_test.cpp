#include "pages/PRINTERSettings.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "pages/code_pages.h"
#include "tests/support/ConfigFile.h"

namespace qlx {
namespace {

using ::testing::ElementsAre;

constexpr int kCompatibility = 1;
constexpr int kEpson = 2;

const FatalEnd kThrow = [](const std::wstring& message) {
  throw std::runtime_error(platform::ToUtf8(message));
};

PRINTERSettings Loaded(const std::vector<ConfigNode>& pairs) {
  PRINTERSettings settings;
  settings.Load({}, pairs);
  return settings;
}

ConfigNode CodePage(const std::wstring& text) {
  return {L"Code_Page", text, {}, {}};
}

ConfigNode Mode(const std::wstring& text) {
  return {L"Emulation_Mode", text, {}, {}};
}

/// The stored values as the standard list shows them.
PRINTERSettings Shown(const std::vector<ConfigNode>& pairs) {
  PRINTERSettings settings = Loaded(pairs);
  settings.ShowStandardCodePages();
  return settings;
}

std::wstring StoredFor(PRINTERSettings& settings, int code_page) {
  settings.ChooseCodePage(code_page);
  return settings.Values(kThrow).code_page;
}

PRINTERSettings WithPrinterList(std::vector<std::wstring> code_pages,
                                const std::vector<ConfigNode>& pairs = {}) {
  PRINTERSettings settings = Loaded(pairs);
  settings.ShowPrinterCodePages(code_pages);
  return settings;
}

TEST(PRINTERSettings, StartsNativeWithTheStandardListAnd858) {
  const PRINTERSettings settings;
  EXPECT_EQ(settings.code_page().items.size(), 26U);
  EXPECT_EQ(settings.code_page().chosen, 1);
  EXPECT_THAT(settings.emulation().items,
              ElementsAre(L"Mirel Printer (Native)", L"Mirel Printer (Compatibility)", L"Epson Emulation"));
  EXPECT_EQ(settings.emulation().chosen, 0);
  EXPECT_FALSE(settings.unsolicited_status());
}

TEST(PRINTERSettings, TheStandardListHoldsItsItemsInTheirOrder) {
  const auto list = StandardCodePages();
  const std::vector<std::wstring> items(list.begin(), list.end());
  EXPECT_THAT(items,
              ElementsAre(L"437", L"858", L"863", L"860", L"865", L"Generic", L"869", L"857", L"864", L"867",
                          L"852", L"848", L"866", L"872", L"775", L"861", L"1250", L"1251", L"1252", L"1253",
                          L"1254", L"1255", L"1256", L"1257", L"1258", L"Printer Default"));
}

TEST(PRINTERSettings, LoadingLeavesTheListsAtTheStandardChoice) {
  const PRINTERSettings settings = Loaded({CodePage(L"4"), Mode(L"2")});
  EXPECT_EQ(settings.code_page().chosen, 1);
  EXPECT_EQ(settings.emulation().chosen, 0);
  EXPECT_FALSE(settings.shows_stored());
}

TEST(PRINTERSettings, ThePortIsThatOfThePrinter) {
  PRINTERSettings settings;
  settings.Load(
      {{L"MSR_USB", L"COM3", {}, {}}, {L"PRINTER_USB", L"COM8", {}, {}}, {L"Printer_USB", L"COM9", {}, {}}},
      {});
  EXPECT_EQ(settings.port(), L"COM8");
}

TEST(PRINTERSettings, StoredValuesAreChosenInTheStandardList) {
  const PRINTERSettings settings = Shown({CodePage(L"4"), Mode(L"2")});
  EXPECT_EQ(settings.code_page().chosen, 4);
  EXPECT_EQ(settings.emulation().chosen, kEpson);
  EXPECT_TRUE(settings.shows_stored());
}

TEST(PRINTERSettings, ANativeCodePageBehindGenericIsLoweredByOneWhenItStandsBeforeTheMode) {
  EXPECT_EQ(Shown({CodePage(L"7"), Mode(L"0")}).code_page().chosen, 6);
  EXPECT_EQ(Shown({CodePage(L"6"), Mode(L"0")}).code_page().chosen, 5);
  EXPECT_EQ(Shown({CodePage(L"5"), Mode(L"0")}).code_page().chosen, 5);
  EXPECT_EQ(Shown({CodePage(L"7"), Mode(L"1")}).code_page().chosen, 7);
}

TEST(PRINTERSettings, ANativeCodePageBehindTheModeIsNotLowered) {
  EXPECT_EQ(Shown({Mode(L"0"), CodePage(L"7")}).code_page().chosen, 7);
}

TEST(PRINTERSettings, ACodePageThatIsNoNumberClearsTheStandardList) {
  for (const wchar_t* text : {L"-1", L"", L"x"}) {
    EXPECT_EQ(Shown({CodePage(text)}).code_page().chosen, ItemList::kNoItem) << text;
  }
}

TEST(PRINTERSettings, ACodePageBeyondTheStandardListShows858) {
  EXPECT_EQ(Shown({CodePage(L"26")}).code_page().chosen, 1);
  EXPECT_EQ(Shown({CodePage(L"25")}).code_page().chosen, 25);
  EXPECT_EQ(Shown({CodePage(L"99999999999")}).code_page().chosen, 1);
}

TEST(PRINTERSettings, AbsentValuesAre858AndNative) {
  const PRINTERSettings settings = Shown({});
  EXPECT_EQ(settings.code_page().chosen, 1);
  EXPECT_EQ(settings.emulation().chosen, 0);
  EXPECT_TRUE(settings.stored_native());
}

TEST(PRINTERSettings, AModeThatIsNoNumberIsNativeAndLowersNothing) {
  const PRINTERSettings settings = Shown({CodePage(L"7"), Mode(L"x")});
  EXPECT_TRUE(settings.stored_native());
  EXPECT_EQ(settings.code_page().chosen, 7);
}

TEST(PRINTERSettings, AModeOutsideItsListClearsTheChoice) {
  const PRINTERSettings settings = Shown({Mode(L"3")});
  EXPECT_FALSE(settings.stored_native());
  EXPECT_EQ(settings.emulation().chosen, ItemList::kNoItem);
}

TEST(PRINTERSettings, UnsolicitedStatusIsOnForTrueInAnyCase) {
  EXPECT_TRUE(Loaded({{L"Unsolicited_Status", L"True", {}, {}}}).unsolicited_status());
  EXPECT_FALSE(Loaded({{L"Unsolicited_Status", L"yes", {}, {}}}).unsolicited_status());
}

TEST(PRINTERSettings, ThePrintersListShowsTheStoredCodePage) {
  const PRINTERSettings settings = WithPrinterList({L"437", L"850", L"Printer Default"}, {CodePage(L"0")});
  EXPECT_THAT(settings.code_page().items, ElementsAre(L"437", L"850", L"Printer Default"));
  EXPECT_EQ(settings.code_page().chosen, 0);
}

TEST(PRINTERSettings, ThePrintersListShowsItsLastItemForACodePageThatIsNoNumber) {
  EXPECT_EQ(WithPrinterList({L"437", L"850", L"Printer Default"}, {CodePage(L"-1")}).code_page().chosen, 2);
}

TEST(PRINTERSettings, ThePrintersListShowsItsSecondItemForACodePageOf32AndMore) {
  EXPECT_EQ(WithPrinterList({L"437", L"850", L"Printer Default"}, {CodePage(L"32")}).code_page().chosen, 1);
}

TEST(PRINTERSettings, ThePrintersListIsClearedForACodePageThatItHasNoItemFor) {
  EXPECT_EQ(WithPrinterList({L"437", L"Printer Default"}, {CodePage(L"31")}).code_page().chosen,
            ItemList::kNoItem);
  EXPECT_EQ(WithPrinterList({L"Printer Default"}, {CodePage(L"32")}).code_page().chosen, ItemList::kNoItem);
}

TEST(PRINTERSettings, WithoutAskingTheStandardListShowsTheStoredValuesAsTheyAre) {
  PRINTERSettings settings = Loaded({CodePage(L"18"), Mode(L"2")});
  settings.ShowWithoutAsking();
  EXPECT_EQ(settings.code_page().chosen, 18);
  EXPECT_EQ(settings.emulation().chosen, kEpson);
  settings = Loaded({CodePage(L"26"), Mode(L"1")});
  settings.ShowWithoutAsking();
  EXPECT_EQ(settings.code_page().chosen, ItemList::kNoItem);
}

TEST(PRINTERSettings, AnotherInterfaceBringsTheStandardListAnd858) {
  PRINTERSettings settings = WithPrinterList({L"437", L"850", L"Printer Default"});
  settings.ChooseEmulation(kEpson);
  EXPECT_EQ(settings.code_page().items.size(), 26U);
  EXPECT_EQ(settings.code_page().chosen, 1);
}

TEST(PRINTERSettings, TheNativeInterfaceBringsThePrintersListBack) {
  PRINTERSettings settings = WithPrinterList({L"437", L"850", L"Printer Default"});
  settings.ChooseEmulation(kEpson);
  settings.ChooseEmulation(0);
  EXPECT_THAT(settings.code_page().items, ElementsAre(L"437", L"850", L"Printer Default"));
  EXPECT_EQ(settings.code_page().chosen, 1);
}

TEST(PRINTERSettings, TheNativeInterfaceBringsTheStandardListWhenThePrinterHasNone) {
  PRINTERSettings settings;
  settings.ChooseCodePage(9);
  settings.ChooseEmulation(0);
  EXPECT_EQ(settings.code_page().items.size(), 26U);
  EXPECT_EQ(settings.code_page().chosen, 1);
}

TEST(PRINTERSettings, DefaultsKeepTheCodePage) {
  PRINTERSettings settings = Shown({CodePage(L"4"), Mode(L"2")});
  settings.SetUnsolicitedStatus(true);
  settings.SetDefaults();
  EXPECT_EQ(settings.emulation().chosen, 0);
  EXPECT_FALSE(settings.unsolicited_status());
  EXPECT_EQ(settings.code_page().chosen, 4);
}

TEST(PRINTERSettings, NativeCodePagesAreStoredByTheirNumbers) {
  constexpr const wchar_t* kStored[] = {L"0",  L"1",  L"2",  L"3",  L"4",  L"6",  L"6",  L"7",  L"8",
                                        L"9",  L"10", L"11", L"12", L"13", L"14", L"15", L"16", L"17",
                                        L"18", L"19", L"20", L"21", L"22", L"23", L"24", L"-1"};
  PRINTERSettings settings;
  for (int item = 0; item < 26; ++item) EXPECT_EQ(StoredFor(settings, item), kStored[item]) << item;
}

TEST(PRINTERSettings, CodePagesOfTheOtherInterfacesAreStoredByTheirPlace) {
  for (const int mode : {kCompatibility, kEpson}) {
    PRINTERSettings settings;
    settings.ChooseEmulation(mode);
    for (int item = 0; item < 26; ++item) EXPECT_EQ(StoredFor(settings, item), std::to_wstring(item)) << mode;
  }
}

TEST(PRINTERSettings, ANativeCodePageWithoutANumberIsStoredByItsPlaceAndOne) {
  PRINTERSettings settings = WithPrinterList({L"850", L"437", L"Printer Default"});
  EXPECT_EQ(StoredFor(settings, 0), L"1");
  EXPECT_EQ(StoredFor(settings, 1), L"0");
  EXPECT_EQ(StoredFor(settings, 2), L"-1");
}

TEST(PRINTERSettings, AnEarlierPrinterDefaultOfADoubledListIsStoredByItsPlaceAndOne) {
  PRINTERSettings settings = WithPrinterList({L"437", L"Printer Default", L"858", L"Printer Default"});
  EXPECT_EQ(StoredFor(settings, 1), L"2");
  EXPECT_EQ(StoredFor(settings, 3), L"-1");
}

TEST(PRINTERSettings, ALastItemWithANumberIsStoredByTheNumber) {
  PRINTERSettings settings = WithPrinterList({L"437", L"813"});
  EXPECT_EQ(StoredFor(settings, 1), L"28");
}

TEST(PRINTERSettings, NoCodePageIsStoredAsZeroInNativeModeAndAsMinusOneElsewhere) {
  PRINTERSettings settings;
  EXPECT_EQ(StoredFor(settings, -1), L"0");
  settings.ChooseEmulation(kEpson);
  EXPECT_EQ(StoredFor(settings, -1), L"-1");
}

TEST(PRINTERSettings, NoInterfaceIsStoredAsMinusOne) {
  EXPECT_EQ(Shown({Mode(L"3")}).Values(kThrow).emulation_mode, L"-1");
}

TEST(PRINTERSettings, ANumberThatTakesMoreThanTwoCharactersEndsTheProgram) {
  PRINTERSettings settings = WithPrinterList(std::vector<std::wstring>(120, L"850"));
  EXPECT_EQ(StoredFor(settings, 98), L"99");
  try {
    StoredFor(settings, 99);
    ADD_FAILURE() << "no end";
  } catch (const std::runtime_error& end) {
    EXPECT_STREQ(end.what(), "Error converting Combo Box settings!\nExiting program.");
  }
}

TEST(PRINTERSettings, SavesItsThreeKeysInTheirOrder) {
  ConfigFile file(L"<MZP><Printer_Configuration/></MZP>");
  PRINTERSettings settings;
  settings.SetUnsolicitedStatus(true);
  PRINTERSettings::Save(settings.Values(kThrow), file.document());
  const ConfigFile::Pairs saved = {
      {L"Code_Page", L"1"}, {L"Emulation_Mode", L"0"}, {L"Unsolicited_Status", L"true"}};
  EXPECT_EQ(file.Saved(L"Printer_Configuration"), saved);
}

TEST(PRINTERSettings, UnsolicitedStatusThatIsOffIsStoredEmpty) {
  EXPECT_EQ(PRINTERSettings().Values(kThrow).unsolicited_status, L"");
}

TEST(PRINTERSettings, AreNotChangedByWhatIsShownOfTheFile) {
  PRINTERSettings settings = Loaded({Mode(L"2"), CodePage(L"7")});
  EXPECT_FALSE(settings.changed());
  settings.ShowStandardCodePages();
  EXPECT_EQ(settings.emulation().chosen, kEpson);
  EXPECT_FALSE(settings.changed());
}

TEST(PRINTERSettings, AreChangedUntilTheChoicesAreBack) {
  PRINTERSettings settings = Shown({CodePage(L"1")});
  settings.ChooseEmulation(kEpson);
  EXPECT_TRUE(settings.changed());
  settings.ChooseEmulation(PRINTERSettings::kNative);
  EXPECT_FALSE(settings.changed());
  settings.ChooseCodePage(3);
  EXPECT_TRUE(settings.changed());
  settings.MarkStored();
  EXPECT_FALSE(settings.changed());
}

TEST(PRINTERSettings, AreStillChangedAfterThePrintersAnswerWhenTheBoxWasSwitchedBefore) {
  PRINTERSettings settings = Loaded({CodePage(L"1")});
  settings.SetUnsolicitedStatus(true);
  settings.ShowStandardCodePages();
  EXPECT_TRUE(settings.changed());
}

}  // namespace
}  // namespace qlx
