#include <sys/stat.h>
#include <unistd.h>

#include "tests/platform/DirectoryTest.h"

namespace qlx::platform {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST_F(DirectoryTest, APrivateOneIsForItsUserAlone) {
  EXPECT_TRUE(MakePrivateDirectory(Path("own")));
  EXPECT_EQ(fs::status(root_ / "own").permissions(), fs::perms::owner_all);
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

TEST_F(DirectoryTest, ALinkInThePlaceOfAPrivateOneIsNone) {
  fs::create_directory_symlink(root_, root_ / "link");
  EXPECT_FALSE(MakePrivateDirectory(Path("link")));
}

TEST_F(DirectoryTest, ListsRegularFilesOnly) {
  Put("file");
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

TEST_F(DirectoryTest, TheRootIsKnownHoweverItIsSpelled) {
  fs::create_directory_symlink("/", root_ / "link");
  for (const std::wstring& root : {std::wstring(L"/"), std::wstring(L"//"), std::wstring(L"/./"),
                                   std::wstring(L"/tmp/.."), Path("link"), Path("link/")}) {
    EXPECT_TRUE(IsRootDirectory(root)) << fs::path(root);
  }
}

TEST_F(DirectoryTest, TheSuitesDataDirectoryIsNoRoot) {
  EXPECT_FALSE(IsRootDirectory(L"/var/lib/quillon/"));
}

TEST_F(DirectoryTest, RemovesALinkButNotWhatItNames) {
  Put("file");
  fs::create_symlink(root_ / "file", root_ / "link");
  EXPECT_TRUE(RemoveFile(Path("link")));
  EXPECT_THAT(RegularFilesIn(root_.wstring()), UnorderedElementsAre(L"file"));
}

}  // namespace
}  // namespace qlx::platform
