#include <cerrno>
#include <csignal>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include "tests/platform/FileStoreTest.h"
#include "tests/platform/linux/file_rights.h"

namespace qlx::platform {
namespace {

TEST_F(FileStoreTest, AFileThatIsNotWritableIsNotReplacedThoughARenameWouldDoIt) {
  Put(Path(), "old");
  fs::permissions(Path(), fs::perms{0444});
  const auto check = [&] {
    if (!BecomeNobody({directory_, Path()})) return 2;
    return Replace(Path()) ? 0 : 1;
  };
  EXPECT_EQ(InAnotherProcess(check), 0);
  EXPECT_EQ(Bytes(Path()), "old");
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, InADirectoryThatIsNotWritableTheFileIsWrittenInPlace) {
  Put(Path(), "older and longer");
  fs::permissions(Path(), fs::perms{0666});
  fs::permissions(directory_, fs::perms{0555});
  const ino_t before = Status(Path()).st_ino;
  const auto check = [&] {
    if (!BecomeNobody()) return 2;
    return Replace(Path()) ? 1 : 0;
  };
  EXPECT_EQ(InAnotherProcess(check), 0);
  EXPECT_EQ(Bytes(Path()), "new");
  EXPECT_EQ(Status(Path()).st_ino, before);
  fs::permissions(directory_, fs::perms{0755});
}

TEST_F(FileStoreTest, AFileThatIsMountedByItselfIsWrittenInPlace) {
  Put(Path(), "outer");
  Put(Path("inner"), "old");
  const auto check = [&] {
    if (unshare(CLONE_NEWNS) != 0) return kNoMounts;
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return kNoMounts;
    if (mount(Path("inner").c_str(), Path().c_str(), nullptr, MS_BIND, nullptr) != 0) return kNoMounts;
    return Replace(Path()) ? 1 : 0;
  };
  const int result = InAnotherProcess(check);
  if (result == kNoMounts) GTEST_SKIP() << "needs the right to mount";
  EXPECT_EQ(result, 0);
  EXPECT_EQ(Bytes(Path("inner")), "new");
  EXPECT_EQ(Bytes(Path()), "outer");
}

TEST_F(FileStoreTest, WhenTheNewBytesDoNotFitInPlaceTheOldOnesGoBack) {
  Put(Path(), std::string(3000, 'o'));
  fs::permissions(Path(), fs::perms{0666});
  fs::permissions(directory_, fs::perms{0555});
  const auto check = [&] {
    const rlimit limit{5000, 5000};  // a write past it fails, as on a full disk
    if (signal(SIGXFSZ, SIG_IGN) == SIG_ERR || setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
    if (!BecomeNobody()) return 2;
    const auto failure = Replace(Path(), std::string(10000, 'n'));
    return failure && failure->error == EFBIG ? 0 : 1;
  };
  EXPECT_EQ(InAnotherProcess(check), 0);
  EXPECT_EQ(Bytes(Path()), std::string(3000, 'o'));
  fs::permissions(directory_, fs::perms{0755});
}

}  // namespace
}  // namespace qlx::platform
