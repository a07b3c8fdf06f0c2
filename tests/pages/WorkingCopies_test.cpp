#include "pages/WorkingCopies.h"

#include "pages/LogoStore.h"
#include "tests/pages/LogoTestbed.h"

namespace qlx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Station kReceipt = Station::kCustomerReceipt;
constexpr Station kInsert = Station::kDocumentInsert;

class WorkingCopiesTest : public LogoTestbed {
 protected:
  std::wstring Make(const std::wstring& source, Station station = kReceipt) {
    return copies_.Make(source, station, ThrowEnded);
  }

  LogoSystem system_ = System();
  WorkingCopies copies_{system_};
};

TEST_F(WorkingCopiesTest, HoldTheTopLeftPartThatTheStationPrints) {
  Make(Picture(L"a.jpg", {1000, 1000}));
  Make(Picture(L"b.jpg", {1000, 1000}), kInsert);
  EXPECT_EQ(Content("tmp/logos/a.bmp"), "576x896 255");
  EXPECT_EQ(Content("tmp/logos/b.bmp"), "472x40 255");
}

TEST_F(WorkingCopiesTest, HoldTheWholeOfASmallerPicture) {
  Make(Picture(L"a.jpg", {100, 1000}), kInsert);
  EXPECT_EQ(Content("tmp/logos/a.bmp"), "100x40 255");
}

TEST_F(WorkingCopiesTest, BearTheNameOfThePicture) {
  EXPECT_EQ(Make(Picture(L"/srv/pictures/summer sale.v2.JPG", {9, 9})),
            (root_ / "tmp" / "logos" / "summer sale.v2.bmp").wstring());
}

TEST_F(WorkingCopiesTest, OfTwoPicturesOfOneNameAreTwo) {
  const std::wstring first = Make(Picture(L"/a/logo.jpg", {9, 9}));
  const std::wstring second = Make(Picture(L"/b/LOGO.gif", {5, 5}));
  EXPECT_EQ(Content("tmp/logos/logo.bmp"), "9x9 255");
  EXPECT_EQ(Content("tmp/logos/LOGO-2.bmp"), "5x5 255");
}

TEST_F(WorkingCopiesTest, HaveAShortNameForALongOne) {
  Make(Picture(L"/a/" + std::wstring(250, L'x') + L".jpg", {9, 9}));
  EXPECT_THAT(Names("tmp/logos"), ElementsAre(std::string(60, 'x') + ".bmp"));
}

TEST_F(WorkingCopiesTest, ReplaceWhatACrashLeft) {
  ASSERT_TRUE(platform::MakePrivateDirectory((root_ / "tmp" / "logos").wstring()));
  Put("tmp/logos/a.bmp");
  Make(Picture(L"a.jpg", {9, 9}));
  EXPECT_EQ(Content("tmp/logos/a.bmp"), "9x9 255");
}

TEST_F(WorkingCopiesTest, AreForgottenAndDeletedWithoutRegardToCase) {
  std::wstring path = Make(Picture(L"a.jpg", {9, 9}));
  std::ranges::replace(path, L'a', L'A');
  copies_.Delete(path);
  copies_.DeleteAll(ThrowEnded);
  EXPECT_THAT(removed_, ElementsAre("a.bmp"));
  EXPECT_THAT(Names("tmp/logos"), IsEmpty());
}

TEST_F(WorkingCopiesTest, AreTheOnlyFilesThatAreDeleted) {
  copies_.Delete(Picture(L"a.jpg", {9, 9}));
  EXPECT_THAT(removed_, IsEmpty());
}

TEST_F(WorkingCopiesTest, AreDeletedFromTheNewestOn) {
  for (const wchar_t* name : {L"a.jpg", L"b.jpg", L"c.jpg"}) Make(Picture(name, {9, 9}));
  copies_.DeleteAll(ThrowEnded);
  copies_.DeleteAll(ThrowEnded);
  EXPECT_THAT(removed_, ElementsAre("c.bmp", "b.bmp", "a.bmp"));
  EXPECT_THAT(Names("tmp/logos"), IsEmpty());
}

TEST_F(WorkingCopiesTest, MayBeGoneAlreadyWhenTheyAreDeleted) {
  Make(Picture(L"a.jpg", {9, 9}));
  std::filesystem::remove_all(root_ / "tmp/logos");
  copies_.DeleteAll(ThrowEnded);
  EXPECT_THAT(log_, IsEmpty());
}

TEST_F(WorkingCopiesTest, ThatCannotBeDeletedEndTheProgram) {
  Make(Picture(L"a.jpg", {9, 9}));
  Make(Picture(L"b.jpg", {9, 9}));
  stuck_ = {"b.bmp"};
  EXPECT_THROW(copies_.DeleteAll(ThrowEnded), Ended);
  ASSERT_FALSE(log_.empty());
  EXPECT_EQ(log_.front(), "PRINTERDialog::DeleteTempImages - Error deleting image files");
  EXPECT_THAT(removed_, ElementsAre("b.bmp"));
}

TEST_F(WorkingCopiesTest, OfAPictureThatCannotBeReadEndTheProgram) {
  EXPECT_THROW(Make(L"gone.jpg"), Ended);
  EXPECT_THAT(
      log_, ElementsAre("PRINTERDialog::AddLogo - Error loading image", "PRINTERDialog::AddLogo - gone.jpg"));
}

// --- in the store ---

class TruncatedLogo : public LogoTestbed {
 protected:
  void Add(int encode_choice) { store_.Add(0, Picture(L"a.jpg", {1000, 1000}), encode_choice, ThrowEnded); }

  LogoStore store_{System()};
};

TEST_F(TruncatedLogo, IsAWorkingCopyForItsStation) {
  Add(3);
  EXPECT_THAT(store_.records(), ElementsAre(LogoRecord{1, (root_ / "tmp" / "logos" / "a.bmp").wstring(),
                                                       Station::kDocumentInsert}));
  EXPECT_EQ(Content("tmp/logos/a.bmp"), "472x40 255");
}

TEST_F(TruncatedLogo, LosesItsWorkingCopyWhenItIsDeleted) {
  Add(1);
  store_.Delete(0);
  EXPECT_THAT(Names("tmp/logos"), IsEmpty());
}

TEST_F(TruncatedLogo, KeepsTheUsersPictureWhenAShrunkenOneIsDeleted) {
  Add(0);
  store_.Delete(0);
  EXPECT_THAT(removed_, IsEmpty());
}

TEST_F(TruncatedLogo, LeavesNoWorkingCopyWhenThePageIsGone) {
  Add(1);
  store_.DeleteTempImages(ThrowEnded);
  EXPECT_THAT(Names("tmp/logos"), IsEmpty());
}

}  // namespace
}  // namespace qlx
