#include "platform/directories.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qlx::platform {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class DirectoryTest : public testing::Test {
 protected:
  DirectoryTest() {
    std::string name = (fs::temp_directory_path() / "qlx-directories-XXXXXX").native();
    root_ = mkdtemp(name.data());
  }
  ~DirectoryTest() override { fs::remove_all(root_); }

  std::wstring Path(const char* name) const { return (root_ / name).wstring(); }
  void Put(const char* name) const { std::ofstream(root_ / name) << name; }

  fs::path root_;
};

TEST_F(DirectoryTest, TheTemporaryOneIsThereAndEndsWithItsSeparator) {
  EXPECT_TRUE(fs::is_directory(TemporaryDirectory()));
  EXPECT_TRUE(TemporaryDirectory().ends_with(L"/"));
}

TEST_F(DirectoryTest, APrivateOneIsForItsUserAlone) {
  EXPECT_TRUE(MakePrivateDirectory(Path("own")));
  EXPECT_EQ(fs::status(root_ / "own").permissions(), fs::perms::owner_all);
}

TEST_F(DirectoryTest, APrivateOneMayBeThereAlready) {
  EXPECT_TRUE(MakePrivateDirectory(Path("own")));
  Put("own/file");
  EXPECT_TRUE(MakePrivateDirectory(Path("own")));
  EXPECT_THAT(RegularFilesIn(Path("own")), UnorderedElementsAre(L"file"));
}

TEST_F(DirectoryTest, OneThatOthersMayChangeIsNotPrivate) {
  fs::create_directory(root_ / "shared");
  fs::permissions(root_ / "shared", fs::perms::owner_all | fs::perms::others_write);
  EXPECT_FALSE(MakePrivateDirectory(Path("shared")));
}

TEST_F(DirectoryTest, OneOfAnotherUserIsNotPrivate) {
  constexpr uid_t kNobody = 65534;
  fs::create_directory(root_ / "others");
  if (chown((root_ / "others").c_str(), kNobody, kNobody) != 0) GTEST_SKIP() << "only root gives files away";
  EXPECT_FALSE(MakePrivateDirectory(Path("others")));
}

TEST_F(DirectoryTest, AFileOrALinkInThePlaceOfAPrivateOneIsNone) {
  Put("file");
  EXPECT_FALSE(MakePrivateDirectory(Path("file")));
  fs::create_directory_symlink(root_, root_ / "link");
  EXPECT_FALSE(MakePrivateDirectory(Path("link")));
  EXPECT_FALSE(MakePrivateDirectory(Path("nowhere/own")));
}

TEST_F(DirectoryTest, ListsRegularFilesOnly) {
  Put("file");
  fs::create_directory(root_ / "folder");
  Put("folder/deeper");
  fs::create_symlink(root_ / "file", root_ / "link");
  ASSERT_EQ(mkfifo((root_ / "pipe").c_str(), 0600), 0);
  EXPECT_THAT(RegularFilesIn(root_.wstring()), UnorderedElementsAre(L"file"));
}

TEST_F(DirectoryTest, GivesNamesOfAnyBytesSoThatTheyCanBeUsedAgain) {
  Put("no\xFFutf8");
  const auto names = RegularFilesIn(root_.wstring());
  ASSERT_EQ(names.size(), 1U);
  EXPECT_TRUE(RemoveFile(root_.wstring() + L"/" + names.front()));
  EXPECT_THAT(RegularFilesIn(root_.wstring()), IsEmpty());
}

TEST_F(DirectoryTest, OneThatCannotBeReadListsNothing) {
  EXPECT_THAT(RegularFilesIn(Path("nowhere")), IsEmpty());
}

TEST_F(DirectoryTest, TheRootIsKnownHoweverItIsSpelled) {
  fs::create_directory_symlink("/", root_ / "link");
  for (const std::wstring& root :
       {std::wstring(), std::wstring(L"/"), std::wstring(L"//"), std::wstring(L"/./"),
        std::wstring(L"/tmp/.."), Path("link"), Path("link/")}) {
    EXPECT_TRUE(IsRootDirectory(root)) << fs::path(root);
  }
}

TEST_F(DirectoryTest, OtherOnesAreNoRoot) {
  for (const std::wstring& other : {root_.wstring(), Path("nowhere/"), std::wstring(L"relative/DAT/"),
                                    std::wstring(L"/var/lib/quillon/")}) {
    EXPECT_FALSE(IsRootDirectory(other)) << fs::path(other);
  }
}

TEST_F(DirectoryTest, RemovesAFileButNotWhatALinkNames) {
  Put("file");
  fs::create_symlink(root_ / "file", root_ / "link");
  EXPECT_TRUE(RemoveFile(Path("link")));
  EXPECT_THAT(RegularFilesIn(root_.wstring()), UnorderedElementsAre(L"file"));
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
