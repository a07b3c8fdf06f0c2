#include "platform/file_store.h"

#include <cerrno>
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
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/path_text.h"

namespace qlx::platform {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLimit = 1000;
constexpr uid_t kNobody = 65534;

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
    if (unshare(CLONE_NEWNS) != 0) return 77;
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return 77;
    if (mount(Path("inner").c_str(), Path().c_str(), nullptr, MS_BIND, nullptr) != 0) return 77;
    return Replace(Path()) ? 1 : 0;
  };
  const int result = InAnotherProcess(check);
  if (result == 77) GTEST_SKIP() << "needs the right to mount";
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

}  // namespace
}  // namespace qlx::platform
