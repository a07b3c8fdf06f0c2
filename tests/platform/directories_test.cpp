#include "tests/platform/DirectoryTest.h"

namespace qlx::platform {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST_F(DirectoryTest, TheTemporaryOneIsThereAndEndsWithItsSeparator) {
  EXPECT_TRUE(fs::is_directory(TemporaryDirectory()));
  EXPECT_TRUE(TemporaryDirectory().ends_with(static_cast<wchar_t>(fs::path::preferred_separator)));
}

TEST_F(DirectoryTest, APrivateOneMayBeThereAlready) {
  EXPECT_TRUE(MakePrivateDirectory(Path("own")));
  Put("own/file");
  EXPECT_TRUE(MakePrivateDirectory(Path("own")));
  EXPECT_THAT(RegularFilesIn(Path("own")), UnorderedElementsAre(L"file"));
}

TEST_F(DirectoryTest, AFileInThePlaceOfAPrivateOneIsNone) {
  Put("file");
  EXPECT_FALSE(MakePrivateDirectory(Path("file")));
  EXPECT_FALSE(MakePrivateDirectory(Path("nowhere/own")));
}

TEST_F(DirectoryTest, ListsFilesOnlyWithOrWithoutASeparatorBehindIt) {
  Put("file");
  Put("another.xml");
  fs::create_directory(root_ / "folder");
  Put("folder/deeper");
  EXPECT_THAT(RegularFilesIn(root_.wstring()), UnorderedElementsAre(L"file", L"another.xml"));
  EXPECT_THAT(RegularFilesIn((root_ / "").wstring()), UnorderedElementsAre(L"file", L"another.xml"));
}

TEST_F(DirectoryTest, OneThatCannotBeReadListsNothing) {
  EXPECT_THAT(RegularFilesIn(Path("nowhere")), IsEmpty());
}

TEST_F(DirectoryTest, OtherOnesAreNoRoot) {
  for (const std::wstring& other : {root_.wstring(), Path("nowhere/"), std::wstring(L"relative/DAT/")})
    EXPECT_FALSE(IsRootDirectory(other)) << fs::path(other);
}

TEST_F(DirectoryTest, TheRootOfThisDirectoryAndNoTextAtAllAreRoots) {
  EXPECT_TRUE(IsRootDirectory(root_.root_path().wstring()));
  EXPECT_TRUE(IsRootDirectory(L""));
}

TEST_F(DirectoryTest, RemovesAFile) {
  Put("file");
  EXPECT_TRUE(RemoveFile(Path("file")));
  EXPECT_TRUE(fs::is_empty(root_));
}

TEST_F(DirectoryTest, AFileThatIsGoneCountsAsRemoved) {
  EXPECT_TRUE(RemoveFile(Path("gone")));
  EXPECT_TRUE(RemoveFile(Path("nowhere/gone")));
}

TEST_F(DirectoryTest, RemovesNoDirectory) {
  fs::create_directory(root_ / "empty");
  EXPECT_FALSE(RemoveFile(Path("empty")));
  EXPECT_TRUE(fs::exists(root_ / "empty"));
}

}  // namespace
}  // namespace qlx::platform
