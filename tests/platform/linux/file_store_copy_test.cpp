#include <sys/resource.h>

#include "tests/platform/FileStoreTest.h"
#include "tests/platform/linux/file_rights.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, ACopyHasBytesAndModeOfTheOriginal) {
  Put(Path(), "bytes");
  fs::permissions(Path(), fs::perms{0600});
  Put(Path("copy"), "an older copy");
  EXPECT_FALSE(Copy(Path(), Path("copy")));
  EXPECT_EQ(Bytes(Path("copy")), "bytes");
  EXPECT_EQ(Status(Path("copy")).st_mode & 07777, 0600U);
  EXPECT_EQ(Names(), (std::set<std::string>{"copy", "file"}));
}

TEST_F(FileStoreTest, OnlyARegularFileIsCopied) {
  EXPECT_TRUE(Copy(Path(), Path("copy")));
  ASSERT_EQ(mkfifo(Path().c_str(), 0600), 0);
  EXPECT_TRUE(Copy(Path(), Path("copy")));
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, ALargeFileIsCopiedWithoutHoldingItInMemory) {
  constexpr long kSize = 64L << 20;
  Put(Path(), "");
  fs::resize_file(Path(), kSize);
  const auto growth = [&] {
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_SELF, &before);
    if (Copy(Path(), Path("copy"))) return 1;
    getrusage(RUSAGE_SELF, &after);
    return (after.ru_maxrss - before.ru_maxrss) * 1024 < kSize / 4 ? 0 : 2;
  };
  EXPECT_EQ(InAnotherProcess(growth), 0);
  EXPECT_EQ(fs::file_size(Path("copy")), static_cast<std::uintmax_t>(kSize));
}

TEST_F(FileStoreTest, ACopyIsNeverReadableByMorePeopleThanTheOriginal) {
  if (geteuid() != 0) GTEST_SKIP() << "needs another user";
  Put(Path(), "bytes");
  // Everyone may read this one; a copy of another owner and group keeps none of those bits.
  fs::permissions(Path(), fs::perms{0644});
  fs::permissions(directory_, fs::perms{0777});
  const auto copy = [&] { return seteuid(kNobody) == 0 && !Copy(Path(), Path("copy")) ? 0 : 1; };
  EXPECT_EQ(InAnotherProcess(copy), 0);
  EXPECT_EQ(Status(Path("copy")).st_uid, kNobody);
  EXPECT_EQ(Status(Path("copy")).st_mode & 07777, 0600U);
}

TEST_F(FileStoreTest, ACopyHasTheOwnerOfTheOriginal) {
  if (geteuid() != 0) GTEST_SKIP() << "needs another user";
  Put(Path(), "bytes");
  ASSERT_EQ(chown(Path().c_str(), kNobody, kNobody), 0);
  EXPECT_FALSE(Copy(Path(), Path("copy")));
  EXPECT_EQ(Status(Path("copy")).st_uid, kNobody);
  EXPECT_EQ(Status(Path("copy")).st_gid, kNobody);
}

}  // namespace
}  // namespace qlx::platform
