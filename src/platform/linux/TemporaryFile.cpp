#include "platform/linux/TemporaryFile.h"

#include <chrono>
#include <cstdio>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

#include "platform/debug_output.h"
#include "platform/linux/path_text.h"

namespace qlx::platform {
namespace {

namespace fs = std::filesystem;

// Another process holds the name for as long as its own save takes: a few milliseconds. One that is stuck, or
// somebody's lock on the name, must not hang the window.
constexpr int kTries = 100;
constexpr std::chrono::milliseconds kBetweenTries{10};

/// A file system without locks counts as locked: PutInPlace still looks whether the name was taken away.
bool TakeLock(int descriptor) {
  return Retry([&] { return flock(descriptor, LOCK_EX | LOCK_NB); }) == 0 || errno != EWOULDBLOCK;
}

bool StillHasName(int descriptor, const fs::path& name) {
  struct stat opened {};
  struct stat named {};
  return fstat(descriptor, &opened) == 0 && lstat(name.c_str(), &named) == 0 &&
         opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
}

/// Removes what a crash left under `name`, unless another process is writing it. False with errno set when
/// the system refuses, so that the name can never be had.
bool RemoveLeftover(const fs::path& name) {
  struct stat found {};
  if (lstat(name.c_str(), &found) != 0) return errno == ENOENT;
  if (!S_ISREG(found.st_mode)) return std::remove(name.c_str()) == 0;
  // For reading: that is enough to lock it, and what was left may be read-only.
  const Descriptor leftover(
      Retry([&] { return open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK); }));
  if (!leftover) return errno == ENOENT;
  const bool abandoned = TakeLock(leftover.number()) && StillHasName(leftover.number(), name);
  return !abandoned || unlink(name.c_str()) == 0;
}

/// A new file under `name`, locked; none with errno set when the system refuses or the name stays taken.
Descriptor CreateLocked(const fs::path& name, mode_t mode) {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  for (int i = 0; i < kTries; ++i) {
    Descriptor file(Retry([&] { return open(name.c_str(), kFlags, mode); }));
    if (!file && errno != EEXIST) return file;
    // Between its creation and its lock another process may have taken the file for a leftover.
    if (file && TakeLock(file.number()) && StillHasName(file.number(), name)) return file;
    if (i > 0) std::this_thread::sleep_for(kBetweenTries);
    if (!RemoveLeftover(name)) return Descriptor(-1);
  }
  errno = EEXIST;
  return Descriptor(-1);
}

/// Makes the rename itself survive a power cut. Too late to take anything back, so a failure is only told.
void FlushDirectory(const fs::path& directory) {
  const Descriptor opened(Retry([&] { return open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (opened && Flush(opened.number())) return;
  SystemDebugOutput().Write(L"[MZP]: the directory could not be flushed: " + PathText(directory.native()));
}

}  // namespace

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = Retry([&] { return write(descriptor, bytes.data(), bytes.size()); });
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool Flush(int descriptor) {
  return Retry([&] { return fsync(descriptor); }) == 0;
}

TemporaryFile::TemporaryFile(const fs::path& target, mode_t mode)
    : target_(target), path_(target.native() + ".new"), file_(CreateLocked(path_, mode)), on_disk_(file_) {
  if (!on_disk_) failure_ = WriteFailure{"open", errno};
}

TemporaryFile::~TemporaryFile() {
  if (on_disk_) unlink(path_.c_str());
}

std::optional<WriteFailure> TemporaryFile::TakeOwnerAndMode(const struct stat& old) {
  struct stat status {};
  const bool known = fstat(file_.number(), &status) == 0;
  const bool owned = known && status.st_uid == old.st_uid && status.st_gid == old.st_gid;
  const bool given = owned || (known && fchown(file_.number(), old.st_uid, old.st_gid) == 0);
  const auto change = [&] { return fchmod(file_.number(), old.st_mode & 07777); };
  if (given && Retry(change) == 0) return std::nullopt;
  return WriteFailure{"owner", errno};
}

std::optional<WriteFailure> TemporaryFile::Append(std::string_view bytes) {
  if (!WriteAll(file_.number(), bytes)) return WriteFailure{"write", errno};
  return std::nullopt;
}

std::optional<WriteFailure> TemporaryFile::PutInPlace() {
  // Or the rename could reach the disk before the bytes, and a power cut leave an empty file.
  if (!Flush(file_.number())) return WriteFailure{"flush", errno};
  // Closing is checked before the old file is gone; a second descriptor keeps the lock until after that.
  const Descriptor lock(fcntl(file_.number(), F_DUPFD_CLOEXEC, 0));
  if (!lock || !file_.Close()) return WriteFailure{"close", errno};
  // Only where locks do not work: what has the name now is another process's, perhaps half written.
  on_disk_ = StillHasName(lock.number(), path_);
  if (!on_disk_) return WriteFailure{"rename", ESTALE};
  if (Retry([&] { return rename(path_.c_str(), target_.c_str()); }) != 0)
    return WriteFailure{"rename", errno};
  on_disk_ = false;
  FlushDirectory(target_.parent_path());
  return std::nullopt;
}

}  // namespace qlx::platform
