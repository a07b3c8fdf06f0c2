#include <cerrno>

#include <fcntl.h>

#include "platform/linux/path_text.h"
#include "tests/platform/FileStoreTest.h"
#include "tests/platform/linux/file_rights.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, AReplacedFileKeepsModeAndOwner) {
  Put(Path(), "old");
  fs::permissions(Path(), fs::perms{0640});
  const bool given = geteuid() == 0 && chown(Path().c_str(), kNobody, kNobody) == 0;
  EXPECT_EQ(given, geteuid() == 0);
  const struct stat before = Status(Path());
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Bytes(Path()), "new");
  EXPECT_EQ(Status(Path()).st_mode, before.st_mode);
  EXPECT_EQ(Status(Path()).st_uid, before.st_uid);
  EXPECT_EQ(Status(Path()).st_gid, before.st_gid);
}

TEST_F(FileStoreTest, AReplacedFileIsANewOneSoThatTheOldStaysWholeUntilThen) {
  Put(Path(), "old");
  const int reader = open(Path().c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_FALSE(Replace(Path()));
  char bytes[8] = {};
  EXPECT_EQ(read(reader, bytes, sizeof bytes), 3);
  EXPECT_STREQ(bytes, "old");
  close(reader);
}

TEST_F(FileStoreTest, ADirectoryInTheFilesPlaceIsNamedAsTheCause) {
  fs::create_directory(Path());
  const auto failure = Replace(Path());
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->error, EISDIR);
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, AMissingDirectoryIsNamedAsTheCause) {
  const auto failure = Replace(Path("missing") / "file");
  ASSERT_TRUE(failure);
  EXPECT_STREQ(failure->step, "open");
  EXPECT_EQ(failure->error, ENOENT);
}

TEST_F(FileStoreTest, AFileNameThatIsNoTextIsReadAndReplaced) {
  const fs::path path = directory_ / "\xFF\xFE.xml";
  const std::wstring text = PathText(path.native());
  EXPECT_FALSE(store_.Replace(text, "new"));
  EXPECT_EQ(store_.Read(text, kLimit).bytes, "new");
}

TEST_F(FileStoreTest, APipeInTheFilesPlaceIsNotReplacedAndNotWaitedFor) {
  ASSERT_EQ(mkfifo(Path().c_str(), 0600), 0);
  EXPECT_TRUE(Replace(Path()));
  EXPECT_TRUE(fs::is_fifo(Path()));
}

TEST_F(FileStoreTest, ANewFileHasTheModeThatTheUmaskLeaves) {
  const auto modes = [&] {
    umask(0027);
    if (Replace(Path("narrow"))) return 1;
    umask(0);
    return Replace(Path("wide")) ? 1 : 0;
  };
  EXPECT_EQ(InAnotherProcess(modes), 0);
  EXPECT_EQ(Status(Path("narrow")).st_mode & 07777, 0640U);
  EXPECT_EQ(Status(Path("wide")).st_mode & 07777, 0644U);
}

TEST_F(FileStoreTest, ANameOrPathThatIsTooLongIsAFailureThatNamesItsCause) {
  for (const fs::path& path : {directory_ / std::string(256, 'n'), directory_ / std::string(5000, '/')}) {
    const auto failure = Replace(path / std::string(300, 'x'));
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->error, ENAMETOOLONG);
    EXPECT_EQ(ReadStatusOf(path / std::string(300, 'x')), ReadStatus::kUnreadable);
  }
  EXPECT_TRUE(Names().empty());
}

}  // namespace
}  // namespace qlx::platform
