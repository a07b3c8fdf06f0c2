#include "platform/file_store.h"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/path_text.h"

namespace qlx::platform {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLimit = 1000;
constexpr uid_t kNobody = 65534;
constexpr int kNoMounts = 77;

class FileStoreTest : public testing::Test {
 protected:
  FileStoreTest() {
    std::string name = (fs::temp_directory_path() / "qlx-store-XXXXXX").native();
    directory_ = mkdtemp(name.data());
    fs::permissions(directory_, fs::perms{0755});
  }
  ~FileStoreTest() override { fs::remove_all(directory_); }

  fs::path Path(const char* name = "file") const { return directory_ / name; }
  static std::wstring Text(const fs::path& path) { return PathText(path.native()); }

  static void Put(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }
  static std::string Bytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static struct stat Status(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
  }

  ReadStatus ReadStatusOf(const fs::path& path) const { return store_.Read(Text(path), kLimit).status; }
  std::optional<WriteFailure> Replace(const fs::path& path, std::string_view bytes = "new") const {
    return store_.Replace(Text(path), bytes);
  }

  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory_))
      names.insert(entry.path().filename().native());
    return names;
  }

  fs::path directory_;
  FileStore& store_ = SystemFileStore();
};

/// What `check` returns in a process of its own, which may give up rights or change what is mounted.
int InAnotherProcess(const std::function<int()>& check) {
  const pid_t child = fork();
  if (child == 0) _exit(check());
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(FileStoreTest, ReadsAFileUpToTheLimit) {
  Put(Path(), std::string(kLimit, 'x'));
  const ReadResult result = store_.Read(Text(Path()), kLimit);
  EXPECT_EQ(result.status, ReadStatus::kRead);
  EXPECT_EQ(result.bytes, std::string(kLimit, 'x'));
}

TEST_F(FileStoreTest, AFileAboveTheLimitIsTooLarge) {
  Put(Path(), std::string(kLimit + 1, 'x'));
  EXPECT_EQ(ReadStatusOf(Path()), ReadStatus::kTooLarge);
}

TEST_F(FileStoreTest, NothingUnderTheNameIsMissing) {
  EXPECT_EQ(ReadStatusOf(Path()), ReadStatus::kMissing);
  Put(Path(), "");
  EXPECT_EQ(ReadStatusOf(Path() / "below"), ReadStatus::kMissing);
  fs::create_symlink("nowhere", Path("link"));
  EXPECT_EQ(ReadStatusOf(Path("link")), ReadStatus::kMissing);
}

TEST_F(FileStoreTest, ADirectoryAPipeOrADeviceIsRefusedWithoutWaiting) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(ReadStatusOf(directory_), ReadStatus::kNotRegular);
  EXPECT_EQ(ReadStatusOf(Path("pipe")), ReadStatus::kNotRegular);
  EXPECT_EQ(ReadStatusOf("/dev/zero"), ReadStatus::kNotRegular);
}

TEST_F(FileStoreTest, ACircleOfLinksIsUnreadableAndNotReplaced) {
  fs::create_symlink("second", Path("first"));
  fs::create_symlink("first", Path("second"));
  EXPECT_EQ(ReadStatusOf(Path("first")), ReadStatus::kUnreadable);
  EXPECT_TRUE(Replace(Path("first")));
  EXPECT_TRUE(fs::is_symlink(Path("first")));
}

TEST_F(FileStoreTest, AFileThatThisUserMayNotReadIsUnreadable) {
  if (geteuid() != 0) GTEST_SKIP() << "needs another user";
  Put(Path(), "x");
  fs::permissions(Path(), fs::perms::none);
  EXPECT_EQ(InAnotherProcess([&] {
              return seteuid(kNobody) == 0 && ReadStatusOf(Path()) == ReadStatus::kUnreadable ? 0 : 1;
            }),
            0);
}

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

TEST_F(FileStoreTest, AFileThatIsNotWritableIsNotReplacedThoughARenameWouldDoIt) {
  Put(Path(), "old");
  fs::permissions(Path(), fs::perms{0444});
  const auto check = [&] {
    constexpr gid_t kSameGroup = static_cast<gid_t>(-1);
    const bool root = geteuid() == 0;
    if (root && (chown(directory_.c_str(), kNobody, kSameGroup) != 0 ||
                 chown(Path().c_str(), kNobody, kSameGroup) != 0 || seteuid(kNobody) != 0)) {
      return 2;
    }
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
    if (geteuid() == 0 && seteuid(kNobody) != 0) return 2;
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

TEST_F(FileStoreTest, ADirectoryInTheFilesPlaceIsAFailure) {
  fs::create_directory(Path());
  const auto failure = Replace(Path());
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->error, EISDIR);
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, AMissingDirectoryIsAFailureThatNamesItsCause) {
  const auto failure = Replace(Path("missing") / "file");
  ASSERT_TRUE(failure);
  EXPECT_STREQ(failure->step, "open");
  EXPECT_EQ(failure->error, ENOENT);
}

TEST_F(FileStoreTest, WhatACrashLeftUnderTheTemporaryNameIsRemoved) {
  Put(Path("file.new"), std::string(10000, 'x'));
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Bytes(Path()), "new");
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, ALinkUnderTheTemporaryNameIsNeverWrittenThrough) {
  Put(Path("precious"), "kept");
  fs::create_symlink("precious", Path("file.new"));
  EXPECT_FALSE(Replace(Path()));
  fs::create_hard_link(Path("precious"), Path("file.new"));
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

TEST_F(FileStoreTest, ACopyHasBytesAndModeOfTheOriginal) {
  Put(Path(), "bytes");
  fs::permissions(Path(), fs::perms{0600});
  Put(Path("copy"), "an older copy");
  EXPECT_FALSE(store_.Copy(Text(Path()), Text(Path("copy"))));
  EXPECT_EQ(Bytes(Path("copy")), "bytes");
  EXPECT_EQ(Status(Path("copy")).st_mode & 07777, 0600U);
  EXPECT_EQ(Names(), (std::set<std::string>{"copy", "file"}));
}

TEST_F(FileStoreTest, OnlyARegularFileIsCopied) {
  EXPECT_TRUE(store_.Copy(Text(Path()), Text(Path("copy"))));
  ASSERT_EQ(mkfifo(Path().c_str(), 0600), 0);
  EXPECT_TRUE(store_.Copy(Text(Path()), Text(Path("copy"))));
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
    if (store_.Copy(Text(Path()), Text(Path("copy")))) return 1;
    getrusage(RUSAGE_SELF, &after);
    return (after.ru_maxrss - before.ru_maxrss) * 1024 < kSize / 4 ? 0 : 2;
  };
  EXPECT_EQ(InAnotherProcess(growth), 0);
  EXPECT_EQ(fs::file_size(Path("copy")), static_cast<std::uintmax_t>(kSize));
}

TEST_F(FileStoreTest, AFileNameThatIsNoTextIsReadAndReplaced) {
  const fs::path path = directory_ / "\xFF\xFE.xml";
  EXPECT_FALSE(Replace(path));
  EXPECT_EQ(store_.Read(Text(path), kLimit).bytes, "new");
}

TEST_F(FileStoreTest, AFileThatGrowsPastItsStatedSizeIsReadToItsEnd) {
  // The kernel states size 0 for these and hands out more: the same as a file that grows after the look at
  // it.
  const std::string status = "/proc/self/status";
  const ReadResult whole = store_.Read(Text(status), 1 << 20);
  EXPECT_EQ(whole.status, ReadStatus::kRead);
  EXPECT_GT(whole.bytes.size(), 500U);
  EXPECT_EQ(store_.Read(Text(status), 100).status, ReadStatus::kTooLarge);
}

TEST_F(FileStoreTest, ASocketInTheFilesPlaceIsRefused) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  Path("socket").native().copy(address.sun_path, sizeof address.sun_path - 1);
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(ReadStatusOf(Path("socket")), ReadStatus::kNotRegular);
  EXPECT_TRUE(Replace(Path("socket")));
  EXPECT_TRUE(fs::is_socket(Path("socket")));
  close(listener);
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

TEST_F(FileStoreTest, WhenTheNewBytesDoNotFitInPlaceTheOldOnesGoBack) {
  Put(Path(), std::string(3000, 'o'));
  fs::permissions(Path(), fs::perms{0666});
  fs::permissions(directory_, fs::perms{0555});
  const auto check = [&] {
    const rlimit limit{5000, 5000};  // a write past it fails, as on a full disk
    if (signal(SIGXFSZ, SIG_IGN) == SIG_ERR || setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
    if (geteuid() == 0 && seteuid(kNobody) != 0) return 2;
    const auto failure = Replace(Path(), std::string(10000, 'n'));
    return failure && failure->error == EFBIG ? 0 : 1;
  };
  EXPECT_EQ(InAnotherProcess(check), 0);
  EXPECT_EQ(Bytes(Path()), std::string(3000, 'o'));
  fs::permissions(directory_, fs::perms{0755});
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

TEST_F(FileStoreTest, APipeOrAnEmptyDirectoryUnderTheTemporaryNameIsRemoved) {
  ASSERT_EQ(mkfifo(Path("file.new").c_str(), 0600), 0);
  EXPECT_FALSE(Replace(Path()));
  fs::create_directory(Path("file.new"));
  EXPECT_FALSE(Replace(Path()));
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
}

TEST_F(FileStoreTest, AFullDirectoryUnderTheTemporaryNameIsAFailureAndStays) {
  fs::create_directory(Path("file.new"));
  Put(Path("file.new/precious"), "kept");
  const auto failure = Replace(Path());
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->error, ENOTEMPTY);
  EXPECT_EQ(Bytes(Path("file.new/precious")), "kept");
}

TEST_F(FileStoreTest, AReadOnlyLeftoverOfThisUserIsRemoved) {
  Put(Path("file.new"), "half");
  fs::permissions(Path("file.new"), fs::perms{0444});
  const auto check = [&] {
    constexpr gid_t kSameGroup = static_cast<gid_t>(-1);
    const bool root = geteuid() == 0;
    if (root && (chown(directory_.c_str(), kNobody, kSameGroup) != 0 ||
                 chown(Path("file.new").c_str(), kNobody, kSameGroup) != 0 || seteuid(kNobody) != 0)) {
      return 2;
    }
    return Replace(Path()) ? 1 : 0;
  };
  EXPECT_EQ(InAnotherProcess(check), 0);
  EXPECT_EQ(Names(), std::set<std::string>{"file"});
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

TEST_F(FileStoreTest, NoBytesAtAllAreAnEmptyFile) {
  Put(Path(), "old");
  EXPECT_FALSE(Replace(Path(), ""));
  const ReadResult result = store_.Read(Text(Path()), kLimit);
  EXPECT_EQ(result.status, ReadStatus::kRead);
  EXPECT_EQ(result.bytes, "");
}

TEST_F(FileStoreTest, TenMegabytesAreReplacedAndReadBack) {
  std::string bytes(10 << 20, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 31 >> 8);
  EXPECT_FALSE(Replace(Path(), bytes));
  EXPECT_TRUE(store_.Read(Text(Path()), bytes.size()).bytes == bytes);
}

TEST_F(FileStoreTest, ACopyIsNeverReadableByMorePeopleThanTheOriginal) {
  if (geteuid() != 0) GTEST_SKIP() << "needs another user";
  Put(Path(), "bytes");
  // Everyone may read this one; a copy of another owner and group keeps none of those bits.
  fs::permissions(Path(), fs::perms{0644});
  fs::permissions(directory_, fs::perms{0777});
  const auto copy = [&] {
    return seteuid(kNobody) == 0 && !store_.Copy(Text(Path()), Text(Path("copy"))) ? 0 : 1;
  };
  EXPECT_EQ(InAnotherProcess(copy), 0);
  EXPECT_EQ(Status(Path("copy")).st_uid, kNobody);
  EXPECT_EQ(Status(Path("copy")).st_mode & 07777, 0600U);
}

TEST_F(FileStoreTest, ACopyHasTheOwnerOfTheOriginal) {
  if (geteuid() != 0) GTEST_SKIP() << "needs another user";
  Put(Path(), "bytes");
  ASSERT_EQ(chown(Path().c_str(), kNobody, kNobody), 0);
  EXPECT_FALSE(store_.Copy(Text(Path()), Text(Path("copy"))));
  EXPECT_EQ(Status(Path("copy")).st_uid, kNobody);
  EXPECT_EQ(Status(Path("copy")).st_gid, kNobody);
}

/// Mounts an empty file system in memory over `directory`, seen by this process alone.
bool MountMemory(const fs::path& directory, const char* options) {
  return unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("none", directory.c_str(), "tmpfs", 0, options) == 0;
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
    return store_.Read(Text(Path()), kLimit).bytes == "old" ? 0 : 2;
  };
  const int result = InAnotherProcess(check);
  if (result == kNoMounts) GTEST_SKIP() << "needs the right to mount";
  EXPECT_EQ(result, 0);
}

}  // namespace
}  // namespace qlx::platform
