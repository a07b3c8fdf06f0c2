#include "pages/LogoStore.h"

#include "pages/logo_files.h"
#include "tests/pages/LogoTestbed.h"

namespace qlx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;

// Entries of the list "Encode:".
constexpr int kReceiptShrunken = 0;
constexpr int kInsertShrunken = 2;

class LogoStoreTest : public LogoTestbed {
 protected:
  void Write() {
    const auto show = [this](const std::wstring& text) { shown_.push_back(text); };
    store_.Write(*document_, show, ThrowEnded);
  }

  /// The message that Write ends the program with.
  std::string EndOfWrite() {
    try {
      Write();
    } catch (const Ended& ended) {
      return ended.what();
    }
    return "no end";
  }

  void Add(int row, const std::wstring& path, int encode_choice = kReceiptShrunken) {
    store_.Add(row, path, encode_choice, ThrowEnded);
  }

  /// The list of logos on disk; there is to be one.
  ConfigNode SavedList() const {
    const auto saved = MakeConfigDocument({});
    saved->Open(ConfigPath().wstring(), false);
    std::vector<ConfigNode> lists;
    for (const ConfigNode& node : saved->ReadSection(L"Printer_Configuration")) {
      if (node.name == L"Printer_Logo") lists.push_back(node);
    }
    EXPECT_EQ(lists.size(), 1U);
    return lists.empty() ? ConfigNode() : lists.front();
  }

  /// A file that lists logo 1 for the receipt and logo 3 for the document insert station.
  void OpenWithTwoLogos() {
    Put("data/1.bmp");
    Put("data/3.bmp");
    Open("<MZP><Printer_Configuration><Printer_Logo Timestamp='00'><Logo Slot='1' Station='0'>" +
         (root_ / "data" / "1.bmp").string() + "</Logo><Logo Slot='3' Station='1'>" +
         (root_ / "data" / "3.bmp").string() + "</Logo></Printer_Logo></Printer_Configuration></MZP>");
    store_.Load(*document_);
  }

  LogoStore store_{System()};
  std::vector<std::wstring> shown_;
};

// --- reading ---

TEST_F(LogoStoreTest, ReadsTheLogosOfTheFile) {
  OpenWithTwoLogos();
  EXPECT_THAT(store_.records(), ElementsAre(LogoRecord{1, Data("1.bmp"), Station::kCustomerReceipt},
                                            LogoRecord{3, Data("3.bmp"), Station::kDocumentInsert}));
}

TEST_F(LogoStoreTest, TakesNoMalformedEntryForALogo) {
  Open(
      "<MZP><Printer_Configuration><Printer_Logo><Logo Slot='0' Station='0'>a</Logo>"
      "<Logo Slot='1000' Station='0'>b</Logo><Logo Slot='x' Station='0'>c</Logo><Logo Station='0'>d</Logo>"
      "<Logo Slot='1' Station='2'>e</Logo><Logo Slot='1'>f</Logo><Logo Slot='1' Station='0'/>"
      "<Picture Slot='1' Station='0'>g</Picture><Logo Slot='999' Station='1'>h</Logo>"
      "</Printer_Logo></Printer_Configuration></MZP>");
  store_.Load(*document_);
  EXPECT_THAT(store_.records(), ElementsAre(LogoRecord{999, L"h", Station::kDocumentInsert}));
}

TEST_F(LogoStoreTest, TakesTheFirstOfTwoEntriesForASlot) {
  Open(
      "<MZP><Printer_Configuration><Printer_Logo><Logo Slot='2' Station='0'>a</Logo>"
      "<Logo Slot='2' Station='1'>b</Logo></Printer_Logo></Printer_Configuration></MZP>");
  store_.Load(*document_);
  EXPECT_THAT(store_.records(), ElementsAre(LogoRecord{2, L"a", Station::kCustomerReceipt}));
}

// --- the list of slots ---

TEST_F(LogoStoreTest, OffersToAddToAFreeRowAndShowsNoPicture) {
  const LogoSelection selection = store_.Select(0);
  EXPECT_TRUE(selection.can_add);
  EXPECT_FALSE(selection.can_delete);
  EXPECT_FALSE(selection.preview);
}

TEST_F(LogoStoreTest, OffersToDeleteAUsedRowAndShowsItsPicture) {
  Add(4, L"till.gif");
  const LogoSelection selection = store_.Select(4);
  EXPECT_FALSE(selection.can_add);
  EXPECT_TRUE(selection.can_delete);
  EXPECT_EQ(selection.preview, L"till.gif");
}

TEST_F(LogoStoreTest, OffersNothingWithoutARow) {
  for (const int row : {-1, 999}) {
    EXPECT_FALSE(store_.Select(row).can_add);
    EXPECT_FALSE(store_.Select(row).can_delete);
  }
}

TEST_F(LogoStoreTest, ARowIsTheSlotBeforeIt) {
  Add(0, L"a.bmp");
  Add(1, L"b.bmp", kInsertShrunken);
  EXPECT_THAT(store_.records(), ElementsAre(LogoRecord{1, L"a.bmp", Station::kCustomerReceipt},
                                            LogoRecord{2, L"b.bmp", Station::kDocumentInsert}));
}

TEST_F(LogoStoreTest, AddsNothingToAUsedRowOrOutOfRange) {
  Add(0, L"a.bmp");
  Add(0, L"b.bmp");
  Add(-1, L"b.bmp");
  Add(999, L"b.bmp");
  EXPECT_THAT(store_.records(), ElementsAre(LogoRecord{1, L"a.bmp", Station::kCustomerReceipt}));
}

TEST_F(LogoStoreTest, ADeletedRowIsFree) {
  Add(0, L"a.bmp");
  store_.Delete(0);
  store_.Delete(7);
  EXPECT_THAT(store_.records(), IsEmpty());
  EXPECT_TRUE(store_.Select(0).can_add);
}

// --- writing ---

TEST_F(LogoStoreTest, AnUnchangedListWritesNoFileAndLeavesTheEntriesAlone) {
  OpenWithTwoLogos();
  const std::string before = Content("QLXConfig.xml");
  Put("data/2.bmp");
  Write();
  EXPECT_EQ(Content("QLXConfig.xml"), before);
  EXPECT_FALSE(document_->changed());
  EXPECT_THAT(Names("data"), ElementsAre("1.bmp", "2.bmp", "3.bmp"));
  EXPECT_EQ(Content("data/1.bmp"), "old");
}

TEST_F(LogoStoreTest, WithoutAnyLogoNothingIsWritten) {
  store_.Load(*document_);
  Write();
  EXPECT_FALSE(document_->changed());
  EXPECT_FALSE(document_->Contains(L"Printer_Logo"));
}

TEST_F(LogoStoreTest, ALogoThatWasAddedAndDeletedAgainChangesNothing) {
  Add(0, L"a.bmp");
  store_.Delete(0);
  Write();
  EXPECT_FALSE(document_->changed());
}

TEST_F(LogoStoreTest, WritesABitmapForEachSlot) {
  Add(0, Picture(L"a.jpg", {1000, 500}));
  Add(11, Picture(L"b.jpg", {100, 100}, 24, 0), kInsertShrunken);
  Write();
  EXPECT_THAT(Names("data"), ElementsAre("1.bmp", "12.bmp"));
  EXPECT_EQ(Content("data/1.bmp"), "576x288 200");
  EXPECT_EQ(Content("data/12.bmp"), "64x40 0");
}

TEST_F(LogoStoreTest, FitsAPaletteImageWithoutReducingIt) {
  Add(0, Picture(L"a.gif", {300, 301}, 8, 255));
  Write();
  EXPECT_EQ(Content("data/1.bmp"), "320x304 255");
}

TEST_F(LogoStoreTest, ListsEachLogoWithItsSlotAndStation) {
  Add(1, Picture(L"a.jpg", {64, 64}), kInsertShrunken);
  Add(0, Picture(L"b.jpg", {64, 64}));
  Write();
  const ConfigNode list = SavedList();
  ASSERT_EQ(list.children.size(), 2U);
  EXPECT_EQ(list.children[0].name, L"Logo");
  EXPECT_EQ(list.children[0].text, Data("2.bmp"));
  EXPECT_THAT(list.children[0].attributes, ElementsAre(Pair(L"Slot", L"2"), Pair(L"Station", L"1")));
  EXPECT_EQ(list.children[1].text, Data("1.bmp"));
  EXPECT_THAT(list.children[1].attributes, ElementsAre(Pair(L"Slot", L"1"), Pair(L"Station", L"0")));
}

TEST_F(LogoStoreTest, StampsTheListWithTheTimeAsAFileTime) {
  Add(0, Picture(L"a.jpg", {64, 64}));
  Write();
  EXPECT_THAT(SavedList().attributes, ElementsAre(Pair(L"Timestamp", L"01d689c921cca5a0")));
}

TEST_F(LogoStoreTest, ReplacesTheListAndNeverDoublesIt) {
  OpenWithTwoLogos();
  Add(1, Picture(L"a.jpg", {64, 64}));
  Write();
  store_.Delete(0);
  Write();
  const ConfigNode list = SavedList();
  ASSERT_EQ(list.children.size(), 2U);
  EXPECT_EQ(list.children[0].text, Data("3.bmp"));
  EXPECT_EQ(list.children[1].text, Data("2.bmp"));
}

TEST_F(LogoStoreTest, LeavesTheOtherPrinterSettingsAlone) {
  Add(0, Picture(L"a.jpg", {64, 64}));
  Write();
  EXPECT_EQ(document_->ReadSection(L"Printer_Configuration").front().name, L"Code_Page");
}

TEST_F(LogoStoreTest, IsNotLedAstrayByAnElementOfTheListsNameElsewhere) {
  Open("<MZP><Printer_Configuration><Old><Printer_Logo/></Old></Printer_Configuration></MZP>");
  Add(0, Picture(L"a.jpg", {64, 64}));
  Write();
  EXPECT_EQ(SavedList().children.size(), 1U);
}

TEST_F(LogoStoreTest, WritesOnceForOneChange) {
  Add(0, Picture(L"a.jpg", {64, 64}));
  Write();
  Write();
  EXPECT_THAT(decoded_, ElementsAre(L"a.jpg"));
}

TEST_F(LogoStoreTest, ConvertsNoPictureThatIsTheSlotsBitmapAlready) {
  OpenWithTwoLogos();
  store_.Delete(0);
  Write();
  EXPECT_THAT(decoded_, IsEmpty());
  EXPECT_THAT(shown_, IsEmpty());
  EXPECT_EQ(Content("data/3.bmp"), "old");
}

TEST_F(LogoStoreTest, ConvertsAPictureWhosePathDiffersInCaseOnly) {
  Add(0, Picture(Data("1.BMP"), {64, 64}));
  Write();
  EXPECT_EQ(Content("data/1.bmp"), "64x64 200");
}

TEST_F(LogoStoreTest, TellsWhichLogoIsBeingSaved) {
  Add(9, Picture(L"a.jpg", {64, 64}));
  Add(0, Picture(L"b.jpg", {64, 64}));
  Write();
  EXPECT_THAT(shown_, ElementsAre(L"Saving Logo #10...", L"Saving Logo #1..."));
}

TEST_F(LogoStoreTest, NeedsNobodyToTell) {
  Add(0, Picture(L"a.jpg", {64, 64}));
  store_.Write(*document_, {}, ThrowEnded);
  EXPECT_EQ(Content("data/1.bmp"), "64x64 200");
}

TEST_F(LogoStoreTest, WritesAnEmptyListWhenTheLastLogoIsGone) {
  OpenWithTwoLogos();
  store_.Delete(0);
  store_.Delete(2);
  Write();
  EXPECT_THAT(SavedList().children, IsEmpty());
  EXPECT_THAT(Names("data"), IsEmpty());
}

// --- stale files ---

TEST_F(LogoStoreTest, DeletesTheBitmapsThatAreNoLogo) {
  Put("data/2.bmp");
  Put("data/01.bmp");
  Put("data/holiday.bmp");
  Add(0, Picture(L"a.jpg", {64, 64}));
  Write();
  EXPECT_THAT(Names("data"), ElementsAre("1.bmp"));
}

TEST_F(LogoStoreTest, DeletesNothingButRegularBitmapFilesDirectlyInTheDirectory) {
  std::filesystem::create_directories(root_ / "data/folder.bmp");
  Put("data/folder.bmp/2.bmp");
  Put("data/2.jpg");
  Put("data/2.BMP");
  Add(0, Picture(L"a.jpg", {64, 64}));
  Write();
  EXPECT_THAT(Names("data"), ElementsAre("1.bmp", "2.BMP", "2.jpg", "folder.bmp"));
  EXPECT_THAT(Names("data/folder.bmp"), ElementsAre("2.bmp"));
}

TEST_F(LogoStoreTest, GoesOnWhenAStaleFileCannotBeDeleted) {
  Put("data/7.bmp");
  stuck_ = {"7.bmp"};
  Add(0, Picture(L"a.jpg", {64, 64}));
  Write();
  EXPECT_THAT(Names("data"), ElementsAre("1.bmp", "7.bmp"));
}

TEST_F(LogoStoreTest, DeletesNothingInTheEmptyDirectoryOrARoot) {
  LogoSystem system = System();
  std::vector<std::wstring> removed;
  system.files_in = [](const std::wstring&) { return std::vector<std::wstring>{L"9.bmp"}; };
  system.remove_file = [&](const std::wstring& path) {
    removed.push_back(path);
    return true;
  };
  for (const wchar_t* root : {L"", L"/", L"//", L"/tmp/.."}) RemoveStaleLogos(root, {}, system);
  EXPECT_THAT(removed, IsEmpty());
  RemoveStaleLogos(L"/tmp/", {}, system);
  EXPECT_THAT(removed, ElementsAre(L"/tmp/9.bmp"));
}

// --- failures ---

TEST_F(LogoStoreTest, EndsWithoutADataDirectory) {
  data_directory_.reset();
  Add(0, Picture(L"a.jpg", {64, 64}));
  EXPECT_EQ(EndOfWrite(), "Error getting DAT directory!\nExiting program.");
  EXPECT_THAT(log_, ElementsAre("PRINTERDialog::GetDatDirectory - Error getting DAT directory"));
  EXPECT_FALSE(document_->changed());
}

TEST_F(LogoStoreTest, EndsWhenAPictureCannotBeLoaded) {
  Add(0, L"gone.jpg");
  EXPECT_EQ(EndOfWrite(), "Error loading image!\nExiting program.");
  EXPECT_THAT(log_, ElementsAre("PRINTERDialog::SetXmlDataForLogo - Error loading image",
                                "PRINTERDialog::SetXmlDataForLogo - gone.jpg"));
}

TEST_F(LogoStoreTest, EndsWhenNothingIsLeftOfAFittedPicture) {
  Add(0, Picture(L"thread.bmp", {10000, 1}));
  EXPECT_EQ(EndOfWrite(), "Error creating CImage!\nExiting program.");
  EXPECT_THAT(log_, ElementsAre("PRINTERDialog::SetXmlDataForLogo - Error creating CImage",
                                "PRINTERDialog::SetXmlDataForLogo - thread.bmp"));
}

TEST_F(LogoStoreTest, EndsWhenABitmapCannotBeSaved) {
  data_directory_ = Folder("nowhere");
  Add(0, Picture(L"a.jpg", {64, 64}));
  EXPECT_EQ(EndOfWrite(), "Error saving image!\nExiting program.");
  EXPECT_THAT(log_, ElementsAre("PRINTERDialog::SetXmlDataForLogo - Error saving image",
                                StartsWith("PRINTERDialog::SetXmlDataForLogo - " + root_.string())));
}

TEST_F(LogoStoreTest, AFailureKeepsWhatIsSavedAndDeletesNothing) {
  Put("data/7.bmp");
  Add(0, Picture(L"a.jpg", {64, 64}));
  Add(1, L"gone.jpg");
  EXPECT_EQ(EndOfWrite(), "Error loading image!\nExiting program.");
  EXPECT_THAT(Names("data"), ElementsAre("1.bmp", "7.bmp"));
  EXPECT_EQ(Content("QLXConfig.xml"), kDefault);
}

TEST_F(LogoStoreTest, KeepsTheOldBitmapWhenTheNewOneCannotBeSaved) {
  Put("data/1.bmp");
  std::filesystem::create_directories(root_ / "data/1.bmp.new/in the way");
  Add(0, Picture(L"a.jpg", {64, 64}));
  EXPECT_EQ(EndOfWrite(), "Error saving image!\nExiting program.");
  EXPECT_EQ(Content("data/1.bmp"), "old");
}

TEST_F(LogoStoreTest, KeepsTheOldLogosOfAFileThatCannotBeSaved) {
  OpenWithTwoLogos();
  std::filesystem::remove(ConfigPath());
  std::filesystem::create_directory(ConfigPath());
  store_.Delete(0);
  Write();
  EXPECT_EQ(save_errors_, 1);
  EXPECT_THAT(Names("data"), ElementsAre("1.bmp", "3.bmp"));
}

TEST_F(LogoStoreTest, TriesAgainAfterTheFileCouldNotBeSaved) {
  OpenWithTwoLogos();
  store_.Delete(0);
  Add(0, Picture(L"a.jpg", {64, 64}));
  store_.Delete(2);
  Add(2, Data("3.bmp"), kInsertShrunken);
  std::filesystem::remove(ConfigPath());
  std::filesystem::create_directory(ConfigPath());
  Write();
  std::filesystem::remove(ConfigPath());
  Write();  // although the list is again the one that the file had
  EXPECT_EQ(save_errors_, 1);
  EXPECT_EQ(SavedList().children.size(), 2U);
}

// --- the time ---

TEST(TimestampText, CountsFrom1601) {
  EXPECT_EQ(TimestampText({-11'644'473'600, 0}), L"0000000000000000");
  EXPECT_EQ(TimestampText({-11'644'473'600, 1}), L"0000000000002710");
}

TEST(TimestampText, IsTheFileTimeOfAUnixTime) {
  EXPECT_EQ(TimestampText({0, 0}), L"019db1ded53e8000");
}

}  // namespace
}  // namespace qlx
