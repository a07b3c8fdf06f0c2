#include "tests/platform/FileStoreTest.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, ACircleOfLinksIsUnreadableAndNotReplaced) {
  fs::create_symlink("second", Path("first"));
  fs::create_symlink("first", Path("second"));
  EXPECT_EQ(ReadStatusOf(Path("first")), ReadStatus::kUnreadable);
  EXPECT_TRUE(Replace(Path("first")));
  EXPECT_TRUE(fs::is_symlink(Path("first")));
}

TEST_F(FileStoreTest, ASymbolicLinkIsFollowedAndStays) {
  fs::create_directory(Path("elsewhere"));
  Put(Path("elsewhere/file"), "old");
  fs::create_symlink("elsewhere/file", Path("second"));
  fs::create_symlink("second", Path("first"));
  EXPECT_FALSE(Replace(Path("first")));
  EXPECT_TRUE(fs::is_symlink(Path("first")));
  EXPECT_EQ(Bytes(Path("elsewhere/file")), "new");
  EXPECT_FALSE(fs::is_symlink(Path("elsewhere/file")));
}

TEST_F(FileStoreTest, ALinkToNothingGetsItsFile) {
  fs::create_symlink("missing", Path("link"));
  EXPECT_FALSE(Replace(Path("link")));
  EXPECT_EQ(Bytes(Path("missing")), "new");
  EXPECT_TRUE(fs::is_symlink(Path("link")));
}

TEST_F(FileStoreTest, AChainOfLinksThatEndsNowhereGetsItsFileAtTheEnd) {
  fs::create_directory(Path("elsewhere"));
  fs::create_symlink("elsewhere/second", Path("first"));
  fs::create_symlink("file", Path("elsewhere/second"));
  EXPECT_FALSE(Replace(Path("first")));
  EXPECT_EQ(Bytes(Path("elsewhere/file")), "new");
  EXPECT_TRUE(fs::is_symlink(Path("elsewhere/second")));
}

TEST_F(FileStoreTest, ALinkIntoAMissingDirectoryIsAFailure) {
  fs::create_symlink("missing/file", Path("link"));
  EXPECT_TRUE(Replace(Path("link")));
  EXPECT_EQ(Names(), std::set<std::string>{"link"});
}

TEST_F(FileStoreTest, ALinkToNothingIsMissing) {
  fs::create_symlink("nowhere", Path("link"));
  EXPECT_EQ(ReadStatusOf(Path("link")), ReadStatus::kMissing);
}

}  // namespace
}  // namespace qlx::platform
