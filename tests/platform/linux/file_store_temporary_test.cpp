#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>

#include "tests/platform/FileStoreTest.h"
#include "tests/platform/linux/file_rights.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, ASymbolicLinkUnderTheTemporaryNameIsNeverWrittenThrough) {
  Put(Path("precious"), "kept");
  fs::create_symlink("precious", Path("file.new"));
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Bytes(Path("precious")), "kept");
  EXPECT_EQ(Names(), (std::set<std::string>{"file", "precious"}));
}

TEST_F(FileStoreTest, ALockOnTheTemporaryNameIsAFailureAndNoHang) {
  Put(Path(), "old");
  Put(Path("file.new"), "");
  const int other = open(Path("file.new").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  EXPECT_TRUE(Replace(Path()));
  EXPECT_EQ(Bytes(Path()), "old");
  close(other);
  EXPECT_FALSE(Replace(Path()));
}

TEST_F(FileStoreTest, ProcessesThatReplaceTheSameFileLeaveOneOfTheirsWhole) {
  const auto replace_often = [&](char letter) {
    return InAnotherProcess([&] {
      for (int i = 0; i < 20; ++i) {
        if (Replace(Path(), std::string(100000, letter))) return 1;
      }
      return 0;
    });
  };
  const int both = InAnotherProcess([&] {
    const pid_t child = fork();
    if (child == 0) _exit(replace_often('a'));
    const int mine = replace_often('b');
    int status = 0;
    waitpid(child, &status, 0);
    return mine + status;
  });
  EXPECT_EQ(both, 0);
  const std::string now = Bytes(Path());
  EXPECT_EQ(now, std::string(100000, now.at(0)));
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, APipeUnderTheTemporaryNameIsRemoved) {
  ASSERT_EQ(mkfifo(Path("file.new").c_str(), 0600), 0);
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, AFullDirectoryUnderTheTemporaryNameIsNamedAsTheCause) {
  fs::create_directory(Path("file.new"));
  Put(Path("file.new/precious"), "kept");
  const auto failure = Replace(Path());
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->error, ENOTEMPTY);
}

TEST_F(FileStoreTest, AReadOnlyLeftoverOfThisUserIsRemoved) {
  Put(Path("file.new"), "half");
  fs::permissions(Path("file.new"), fs::perms{0444});
  const auto check = [&] {
    if (!BecomeNobody({directory_, Path("file.new")})) return 2;
    return Replace(Path()) ? 1 : 0;
  };
  EXPECT_EQ(InAnotherProcess(check), 0);
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

}  // namespace
}  // namespace qlx::platform
