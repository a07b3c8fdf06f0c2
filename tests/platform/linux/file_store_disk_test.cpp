#include <cerrno>
#include <csignal>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include "tests/platform/FileStoreTest.h"
#include "tests/platform/linux/file_rights.h"

namespace qlx::platform {
namespace {

/// Mounts an empty file system in memory over `directory`, seen by this process alone.
bool MountMemory(const fs::path& directory, const char* options) {
  return unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("none", directory.c_str(), "tmpfs", 0, options) == 0;
}

TEST_F(FileStoreTest, WhenTheNewBytesDoNotFitBesideTheFileTheOldOneStands) {
  Put(Path(), "old");
  const auto check = [&] {
    const rlimit limit{5000, 5000};
    if (signal(SIGXFSZ, SIG_IGN) == SIG_ERR || setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
    return Replace(Path(), std::string(10000, 'n')) ? 0 : 1;
  };
  EXPECT_EQ(InAnotherProcess(check), 0);
  EXPECT_EQ(Bytes(Path()), "old");
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, OnAFullDiskTheOldFileStandsWholeAndNothingIsBesideIt) {
  const auto check = [&] {
    if (!MountMemory(directory_, "size=64k")) return kNoMounts;
    Put(Path(), std::string(20000, 'o'));
    const auto failure = Replace(Path(), std::string(100000, 'n'));
    if (!failure || failure->error != ENOSPC) return 1;
    if (Bytes(Path()) != std::string(20000, 'o')) return 2;
    return Names() == std::set<std::string>{"file"} ? 0 : 3;
  };
  const int result = InAnotherProcess(check);
  if (result == kNoMounts) GTEST_SKIP() << "needs the right to mount";
  EXPECT_EQ(result, 0);
}

TEST_F(FileStoreTest, OnAReadOnlyFileSystemASaveIsAFailureAndReadingIsNot) {
  const auto check = [&] {
    if (!MountMemory(directory_, "size=64k")) return kNoMounts;
    Put(Path(), "old");
    if (mount(nullptr, directory_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0) return kNoMounts;
    const auto over_old = Replace(Path());
    const auto beside = Replace(Path("other"));
    if (!over_old || over_old->error != EROFS || !beside || beside->error != EROFS) return 1;
    return store_.Read(Path().wstring(), kLimit).bytes == "old" ? 0 : 2;
  };
  const int result = InAnotherProcess(check);
  if (result == kNoMounts) GTEST_SKIP() << "needs the right to mount";
  EXPECT_EQ(result, 0);
}

}  // namespace
}  // namespace qlx::platform
