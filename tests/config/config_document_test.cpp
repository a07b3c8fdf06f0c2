#include "config/ConfigDocument.h"
#include "tests/config/Installation.h"

namespace qlx {
namespace {

using OneDocument = Installation;
using Names = std::vector<std::string>;

TEST_F(OneDocument, OpeningAMissingPathWithoutCreationFailsAndIsNotLoaded) {
  const auto document = Document();
  EXPECT_FALSE(document->Open(Path().wstring(), false));
  EXPECT_FALSE(document->loaded());
  EXPECT_EQ(document->path(), L"");
}

TEST_F(OneDocument, OpeningAMissingPathWithCreationGivesAnEmptyLoadedDocument) {
  const auto document = Document();
  EXPECT_TRUE(document->Open(Path().wstring(), true));
  EXPECT_TRUE(document->loaded());
  EXPECT_EQ(document->path(), Path().wstring());
  std::vector<ConfigNode> tree(3);
  EXPECT_EQ(document->ReadTree(L"MZP", tree), 0);
  EXPECT_TRUE(tree.empty());
  EXPECT_TRUE(FileNames().empty());
}

TEST_F(OneDocument, AFileThatIsNotWellFormedBehavesAsAMissingOne) {
  Write("<MZP><a></MZP>");
  EXPECT_FALSE(Document()->Open(Path().wstring(), false));
  const auto document = Document();
  EXPECT_TRUE(document->Open(Path().wstring(), true));
  EXPECT_FALSE(document->Contains(L"MZP"));
}

TEST_F(OneDocument, AFailedOpenUnloadsWhatWasOpenBefore) {
  const auto document = Opened("<MZP><S><k>1</k></S></MZP>");
  EXPECT_FALSE(document->Open((directory_ / "none.xml").wstring(), false));
  EXPECT_FALSE(document->loaded());
  document->Save();
  EXPECT_FALSE(document->changed());
  EXPECT_EQ(Bytes(), "<MZP><S><k>1</k></S></MZP>");
}

TEST_F(OneDocument, BeforeAnOpenNothingIsReadAddedOrSaved) {
  const auto document = Document();
  std::vector<ConfigNode> tree(3);
  EXPECT_EQ(document->ReadTree(L"MZP", tree), 1006);
  EXPECT_TRUE(tree.empty());
  document->AddNode(L"", L"MZP", L"", {});
  document->SetValue(L"S", L"k", L"v");
  document->RemoveNodes(L"S", L"k");
  document->Save(Path().wstring());
  EXPECT_TRUE(document->ReadSection(L"S").empty());
  EXPECT_FALSE(document->Contains(L"MZP"));
  EXPECT_FALSE(document->changed());
  EXPECT_TRUE(FileNames().empty());
}

TEST_F(OneDocument, ReadTreeGivesTheRootAsOneTreeWithAllItsDescendants) {
  const auto document = Opened("<MZP><a><b>1</b></a><c/></MZP>");
  std::vector<ConfigNode> tree;
  EXPECT_EQ(document->ReadTree(L"MZP", tree), 0);
  ASSERT_EQ(tree.size(), 1U);
  EXPECT_EQ(tree[0].children[0].children[0].text, L"1");
  EXPECT_TRUE(ConfigDocument::FindNode(tree, L"MZP"));
  EXPECT_TRUE(ConfigDocument::FindNode(tree, L"b"));
  EXPECT_FALSE(ConfigDocument::FindNode(tree, L"d"));
  EXPECT_EQ(document->ReadTree(L"", tree), 0);
  EXPECT_TRUE(tree.empty());
}

TEST_F(OneDocument, SavingWithAnEmptyPathWritesToThePathOfTheLastOpen) {
  const auto document = Opened("<MZP/>");
  document->SetValue(L"S", L"k", L"v");
  EXPECT_FALSE(document->changed());
  document->Save();
  EXPECT_TRUE(document->changed());
  EXPECT_EQ(Reopened()->ReadSection(L"S").at(0).text, L"v");
  document->ClearChanged();
  EXPECT_FALSE(document->changed());
}

TEST_F(OneDocument, ASaveTellsWhetherTheFileWasWritten) {
  EXPECT_FALSE(Document()->Save());
  const auto document = Opened("<MZP/>");
  EXPECT_TRUE(document->Save());
  EXPECT_FALSE(document->Save((directory_ / "nowhere" / "file.xml").wstring()));
}

TEST_F(OneDocument, SavingToAPathWritesThereAndNotToTheOpenedOne) {
  const auto document = Opened("<MZP/>");
  document->SetValue(L"S", L"k", L"v");
  document->Save(Path(".other").wstring());
  EXPECT_EQ(Bytes(), "<MZP/>");
  EXPECT_NE(Bytes(".other").find("<k>v</k>"), std::string::npos);
}

TEST_F(OneDocument, AValueIsSetInPlaceOrElseAppendedToItsSection) {
  const auto document = Opened("<MZP><S><k>1</k><l>2</l></S></MZP>");
  document->SetValue(L"S", L"k", L"3");
  document->SetValue(L"S", L"m", L"4", {{L"VID", L"b"}, {L"PID", L"a"}});
  document->Save();
  EXPECT_NE(Bytes().find("<S>\n    <k>3</k>\n    <l>2</l>\n    <m PID=\"a\" VID=\"b\">4</m>\n  </S>"),
            std::string::npos);
}

TEST_F(OneDocument, EqualNamesElsewhereAreNeverTouched) {
  const std::string elsewhere = "<T><k>t</k><x><k>u</k></x></T>";
  const auto document = Opened("<MZP><k>r</k>" + elsewhere + "<S><k>1</k><x><k>2</k></x></S></MZP>");
  document->SetValue(L"S", L"k", L"3");
  EXPECT_EQ(document->ReadSection(L"T").at(0).text, L"t");
  EXPECT_EQ(document->ReadSection(L"S").at(0).text, L"3");
  document->RemoveNodes(L"S", L"k");
  document->Save();
  for (const char* kept : {"<k>r</k>", "<k>t</k>", "<k>u</k>", "<k>2</k>"}) {
    EXPECT_NE(Bytes().find(kept), std::string::npos) << kept;
  }
  EXPECT_EQ(Bytes().find("<k>3</k>"), std::string::npos);
}

TEST_F(OneDocument, RemovingByAttributeLeavesTheOthers) {
  const auto document = Opened("<MZP><S><k p='1'>a</k><k p='2'>b</k></S></MZP>");
  document->RemoveNodes(L"S", L"k", {{L"p", L"1"}});
  ASSERT_EQ(document->ReadSection(L"S").size(), 1U);
  EXPECT_EQ(document->ReadSection(L"S").at(0).text, L"b");
}

TEST_F(OneDocument, SectionsUnderANestedMzpAreReadAndWritten) {
  const auto document = Opened("<r><MZP><x><MZP><S><k>1</k></S></MZP></x></MZP></r>");
  EXPECT_EQ(document->ReadSection(L"S").at(0).text, L"1");
  document->SetValue(L"S", L"k", L"2");
  EXPECT_EQ(document->ReadSection(L"S").at(0).text, L"2");
}

TEST_F(OneDocument, AMissingSectionIsAddedToTheFirstMzp) {
  const auto document = Opened("<r><MZP n='1'/><MZP n='2'/></r>");
  document->SetValue(L"S", L"k", L"v");
  document->Save();
  EXPECT_NE(Bytes().find("<MZP n=\"1\">\n    <S>\n      <k>v</k>"), std::string::npos);
  EXPECT_NE(Bytes().find("<MZP n=\"2\"/>"), std::string::npos);
}

TEST_F(OneDocument, CommentsUnknownElementsAndUnknownAttributesSurvive) {
  const auto document =
      Opened("<!-- top --><MZP my='x'><!-- in --><S a='1'><?pi data?><u z='9'>t</u></S></MZP><!-- end -->");
  document->SetValue(L"S", L"k", L"v");
  document->Save();
  for (const char* kept : {"<!-- top -->", "<MZP my=\"x\">", "<!-- in -->", "<S a=\"1\">", "<?pi data?>",
                           "<u z=\"9\">t</u>", "<!-- end -->"}) {
    EXPECT_NE(Bytes().find(kept), std::string::npos) << kept;
  }
}

TEST_F(OneDocument, ATreeIsAddedWithAllItsDescendants) {
  const auto document = Document();
  ASSERT_TRUE(document->Open(Path().wstring(), true));
  document->AddTree(
      {L"MZP", L"", {}, {{L"S", L"", {}, {{L"k", L"v", {{L"a", L"1"}}, {}}}}, {L"T", {}, {}, {}}}}, L"");
  document->Save();
  EXPECT_EQ(Bytes(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<MZP>\n  <S>\n    <k a=\"1\">v</k>\n  </S>\n  "
            "<T/>\n</MZP>\n");
}

TEST_F(OneDocument, AnUnchangedFileIsWrittenTheSameAgain) {
  Opened("<MZP><S><k> v </k><!-- c --></S><T>  <x/>  </T></MZP>")->Save();
  const std::string once = Bytes();
  Reopened()->Save();
  EXPECT_EQ(Bytes(), once);
}

TEST_F(OneDocument, AFailedSaveShowsItsBoxKeepsTheFileAndLeavesChangedUnset) {
  const auto document = Opened("<MZP/>");
  std::filesystem::remove(Path());
  std::filesystem::create_directory(Path());
  document->Save();
  ASSERT_EQ(boxes_.size(), 1U);
  EXPECT_EQ(boxes_[0].first, L"Save File Error!");
  EXPECT_EQ(boxes_[0].second,
            L"Unable to save file \"" + Path().wstring() + L"\".\nPlease check location of file");
  EXPECT_FALSE(document->changed());
  EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml"}));
}

TEST_F(OneDocument, AFailedSaveElsewhereNamesThatPathAndKeepsAnEarlierChange) {
  const auto document = Opened("<MZP/>");
  document->Save();
  const std::wstring elsewhere = (directory_ / "none" / "x.xml").wstring();
  document->Save(elsewhere);
  ASSERT_EQ(boxes_.size(), 1U);
  EXPECT_NE(boxes_[0].second.find(elsewhere), std::wstring::npos);
  EXPECT_TRUE(document->changed());
}

TEST_F(OneDocument, TheTextOfASaveErrorIsCutTo260Units) {
  const auto document = Opened("<MZP/>");
  document->Save((directory_ / std::string(300, 'n') / "x.xml").wstring());
  ASSERT_EQ(boxes_.size(), 1U);
  EXPECT_EQ(boxes_[0].second.size(), 260U);
  EXPECT_TRUE(boxes_[0].second.starts_with(L"Unable to save file \""));
}

TEST_F(OneDocument, TheCutOfASaveErrorCountsUtf16UnitsAndSplitsNoCharacter) {
  const auto document = Opened("<MZP/>");
  document->Save(L"/none/" + Times(300, L"\U0001F5A8"));
  ASSERT_EQ(boxes_.size(), 1U);
  const std::size_t units = platform::Utf16Length(boxes_[0].second);
  EXPECT_TRUE(units == 259 || units == 260) << units;
}

TEST_F(OneDocument, AFileThatVanishedMeanwhileIsWrittenAgain) {
  const auto document = Opened("<MZP><S><k>1</k></S></MZP>");
  std::filesystem::remove(Path());
  document->Save();
  EXPECT_TRUE(boxes_.empty());
  EXPECT_TRUE(document->changed());
  EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml"}));
}

TEST_F(OneDocument, TheOldFileIsKeptBeforeTheFirstSaveOfARunOnly) {
  const auto document = Opened("<MZP><!-- first --></MZP>");
  document->Save();
  EXPECT_EQ(Bytes(".bak"), "<MZP><!-- first --></MZP>");
  document->SetValue(L"S", L"k", L"v");
  document->Save();
  EXPECT_EQ(Bytes(".bak"), "<MZP><!-- first --></MZP>");
  EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml", "QLXConfig.xml.bak"}));
}

TEST_F(OneDocument, TheNextRunKeepsTheFileOfTheLastOne) {
  Opened("<MZP><!-- first --></MZP>")->Save();
  const std::string second = Bytes();
  Reopened()->Save();
  EXPECT_EQ(Bytes(".bak"), second);
}

TEST_F(OneDocument, ASaveElsewhereLeavesTheBackupOfTheOpenedFileToItsOwnFirstSave) {
  const auto document = Opened("<MZP><!-- first --></MZP>");
  document->Save(Path(".other").wstring());
  document->Save();
  EXPECT_EQ(Bytes(".bak"), "<MZP><!-- first --></MZP>");
}

TEST_F(OneDocument, OpeningOrAFailedSaveLeavesNoBackup) {
  Opened("<MZP/>");
  EXPECT_EQ(FileNames(), (Names{"QLXConfig.xml"}));
}

TEST_F(OneDocument, ADefaultNamespaceHidesEveryElement) {
  const auto document = Opened("<MZP xmlns='urn:x'><S><k>1</k></S></MZP>");
  EXPECT_FALSE(document->Contains(L"MZP"));
  EXPECT_TRUE(document->ReadSection(L"S").empty());
}

}  // namespace
}  // namespace qlx
