// Every system call of a save fails once, in every way that disks fail.
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include "config/ConfigDocument.h"
#include "platform/file_store.h"
#include "platform/linux/path_text.h"
#include "tests/robustness/linux/faults.h"

namespace qlx {
namespace {

namespace fs = std::filesystem;
using faults::Call;
using faults::Fault;

constexpr char kOld[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<MZP>\n  <IB_Configuration>\n    <Prefix>old</Prefix>\n"
    "  </IB_Configuration>\n</MZP>\n";
constexpr char kUnparsable[] = "<MZP><IB_Configuration>";
constexpr int kErrors[] = {ENOSPC, EIO, EROFS, EACCES, EINTR, faults::kCutShort};
constexpr int kMostCallsOfAKind = 50;  // more than a save makes

/// In memory where there is such a directory: thousands of saves would wait for the disk, and it adds
/// nothing.
fs::path Directory() {
  const fs::path memory = "/dev/shm";
  return access(memory.c_str(), W_OK) == 0 ? memory : fs::temp_directory_path();
}

std::string Bytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool CanBeCutShort(Call call) {
  return call == Call::kRead || call == Call::kWrite;
}

/// A directory with one file, the document open on it and one value changed.
class Installation {
 public:
  explicit Installation(const std::string& content) {
    std::string name = (Directory() / "qlx-faults-XXXXXX").native();
    directory_ = mkdtemp(name.data());
    std::ofstream(Path()) << content;
    document_ = MakeConfigDocument([this](const std::wstring&) { ++boxes_; });
    document_->Open(platform::PathText(Path().native()), true);
    document_->SetValue(L"IB_Configuration", L"Prefix", L"new");
  }
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;
  ~Installation() { fs::remove_all(directory_); }

  fs::path Path() const { return directory_ / "QLXConfig.xml"; }
  const fs::path& directory() const { return directory_; }

  /// True when the fault was met on the way.
  bool SaveWith(const Fault& fault) {
    faults::Arm(fault);
    document_->Save();
    return faults::Disarm();
  }

  bool saved() const { return document_->changed(); }
  int boxes() const { return boxes_; }

  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory_))
      names.insert(entry.path().filename().native());
    return names;
  }

 private:
  fs::path directory_;
  std::unique_ptr<ConfigDocument> document_;
  int boxes_ = 0;
};

/// Calls `check` with every fault that a save over `content` meets.
void ForEachFault(const std::string& content, const std::function<void(Installation&)>& check) {
  for (const Call call : faults::kEveryCall) {
    for (const int error : kErrors) {
      if (error == faults::kCutShort && !CanBeCutShort(call)) continue;
      for (int index = 0; index < kMostCallsOfAKind; ++index) {
        Installation installation(content);
        const Fault fault{call, index, error};
        SCOPED_TRACE(testing::Message() << fault);
        if (!installation.SaveWith(fault)) break;
        check(installation);
      }
    }
  }
}

/// The file after a save that meets no fault.
std::string BytesOfNew(const std::string& content) {
  Installation installation(content);
  EXPECT_FALSE(installation.SaveWith({Call::kOpen, kMostCallsOfAKind, EIO}));
  EXPECT_TRUE(installation.saved());
  return Bytes(installation.Path());
}

void ExpectOldOrNewWhole(const Installation& installation, const std::string& old) {
  EXPECT_EQ(Bytes(installation.Path()), installation.saved() ? BytesOfNew(old) : old);
}

TEST(SaveFaults, TheOldFileOrTheNewOneStandsWhole) {
  ForEachFault(kOld, [](const Installation& installation) { ExpectOldOrNewWhole(installation, kOld); });
}

TEST(SaveFaults, AFailedSaveSaysSoOnceAndASuccessfulOneSaysNothing) {
  ForEachFault(kOld, [](const Installation& installation) {
    EXPECT_EQ(installation.boxes(), installation.saved() ? 0 : 1);
  });
}

TEST(SaveFaults, NothingIsLeftBesideTheFileButTheKeptCopy) {
  ForEachFault(kOld, [](const Installation& installation) {
    auto names = installation.Names();
    names.erase("QLXConfig.xml.bak");
    EXPECT_EQ(names, std::set<std::string>{"QLXConfig.xml"});
  });
}

TEST(SaveFaults, TheKeptCopyIsWholeOrNotThere) {
  ForEachFault(kOld, [](const Installation& installation) {
    if (installation.Names().contains("QLXConfig.xml.bak")) {
      EXPECT_EQ(Bytes(installation.directory() / "QLXConfig.xml.bak"), kOld);
    }
  });
}

TEST(SaveFaults, AnUnparsableFileIsNotReplacedBeforeItsBytesAreKept) {
  ForEachFault(kUnparsable, [](const Installation& installation) {
    ExpectOldOrNewWhole(installation, kUnparsable);
    const fs::path kept = installation.directory() / "QLXConfig.xml.unreadable";
    EXPECT_TRUE(!installation.saved() || Bytes(kept) == kUnparsable);
    auto names = installation.Names();
    names.erase(kept.filename().native());
    EXPECT_EQ(names, std::set<std::string>{"QLXConfig.xml"});
  });
}

TEST(SaveFaults, EveryKindOfCallIsMetByASave) {
  for (const Call call : {Call::kOpen, Call::kWrite, Call::kFsync, Call::kClose, Call::kRename}) {
    Installation installation(kOld);
    EXPECT_TRUE(installation.SaveWith({call, 0, EIO})) << static_cast<int>(call);
  }
}

/// What replacing a file's content says when `fault` is met on the way.
std::optional<platform::WriteFailure> ReplaceWith(const Fault& fault) {
  const Installation installation(kOld);
  faults::Arm(fault);
  auto failure = platform::SystemFileStore().Replace(platform::PathText(installation.Path().native()), "new");
  EXPECT_TRUE(faults::Disarm()) << fault;
  return failure;
}

TEST(SaveFaults, AFileThatCannotBeFlushedOrClosedIsNotPutInPlace) {
  EXPECT_TRUE(ReplaceWith({Call::kFsync, 0, EIO}));
  EXPECT_TRUE(ReplaceWith({Call::kClose, 0, EIO}));
}

TEST(SaveFaultsDeathTest, ADirectoryThatCannotBeFlushedAfterTheRenameIsToldAndNoFailure) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // the debugger's channel reads its setting once a process
  const auto save = [] {
    setenv("QUILLON_DEBUG", "1", 1);
    exit(ReplaceWith({Call::kFsync, 1, EIO}) ? 1 : 0);
  };
  EXPECT_EXIT(save(), testing::ExitedWithCode(0), "the directory could not be flushed: /");
}

/// Expects a save to succeed whichever of its calls of the kind meets `error`.
void ExpectNoFailure(Call call, int error) {
  for (int index = 0; index < kMostCallsOfAKind; ++index) {
    Installation installation(kOld);
    const Fault fault{call, index, error};
    const bool met = installation.SaveWith(fault);
    EXPECT_TRUE(installation.saved()) << fault;
    EXPECT_EQ(Bytes(installation.directory() / "QLXConfig.xml.bak"), kOld) << fault;
    if (!met) return;
  }
  ADD_FAILURE() << "the save never ran out of calls";
}

TEST(SaveFaults, AnInterruptedCallIsNoFailure) {
  for (const Call call : faults::kEveryCall) ExpectNoFailure(call, EINTR);
}

TEST(SaveFaults, AReadOrWriteCutShortIsNoFailure) {
  ExpectNoFailure(Call::kRead, faults::kCutShort);
  ExpectNoFailure(Call::kWrite, faults::kCutShort);
}

TEST(SaveFaults, ASaveIsPrivateUntilItHasItsOwner) {
  const Installation installation(kOld);
  const fs::path temporary = installation.Path().native() + ".new";
  fs::perms early = fs::perms::unknown;
  faults::Before(Call::kChmod, [&] { early = fs::status(temporary).permissions(); });
  EXPECT_FALSE(platform::SystemFileStore().Replace(platform::PathText(installation.Path().native()), "new"));
  EXPECT_EQ(early, fs::perms{0600});
  EXPECT_EQ(fs::status(installation.Path()).permissions(), fs::perms{0644});
}

TEST(SaveFaults, WhatAnotherProcessPutUnderTheTemporaryNameIsNeverRenamed) {
  const Installation installation(kOld);
  const fs::path temporary = installation.Path().native() + ".new";
  faults::Before(Call::kFsync, [&] {  // as where locks do not work
    fs::remove(temporary);
    std::ofstream(temporary) << "half of another save";
  });
  EXPECT_TRUE(platform::SystemFileStore().Replace(platform::PathText(installation.Path().native()), "new"));
  EXPECT_EQ(Bytes(installation.Path()), kOld);
  EXPECT_EQ(Bytes(temporary), "half of another save");
}

/// Runs what follows as a user who may write the file but nothing beside it.
class FileWithoutDirectory {
 public:
  explicit FileWithoutDirectory(const Installation& installation) : directory_(installation.directory()) {
    fs::permissions(installation.Path(), fs::perms{0666});
    fs::permissions(directory_, fs::perms{0555});
    if (was_root_ && seteuid(kNobody) != 0) abort();
  }
  FileWithoutDirectory(const FileWithoutDirectory&) = delete;
  FileWithoutDirectory& operator=(const FileWithoutDirectory&) = delete;
  ~FileWithoutDirectory() {
    if (was_root_ && seteuid(0) != 0) abort();
    fs::permissions(directory_, fs::perms{0755});
  }

 private:
  static constexpr uid_t kNobody = 65534;
  fs::path directory_;
  bool was_root_ = geteuid() == 0;
};

TEST(SaveFaults, AFileWrittenInPlaceStandsWholeAfterAFaultToo) {
  for (const Call call : {Call::kRead, Call::kWrite, Call::kFsync, Call::kTruncate, Call::kClose}) {
    for (int index = 0; index < kMostCallsOfAKind; ++index) {
      Installation installation(kOld);
      const Fault fault{call, index, ENOSPC};
      SCOPED_TRACE(testing::Message() << fault);
      bool met = false;
      {
        const FileWithoutDirectory unprivileged(installation);
        met = installation.SaveWith(fault);
      }
      ExpectOldOrNewWhole(installation, kOld);
      EXPECT_EQ(installation.boxes(), installation.saved() ? 0 : 1);
      EXPECT_TRUE(met || index > 0);
      if (!met) break;
    }
  }
}

}  // namespace
}  // namespace qlx
