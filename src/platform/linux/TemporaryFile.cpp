#include "platform/linux/TemporaryFile.h"

#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

#include "platform/debug_output.h"
#include "platform/linux/path_text.h"

namespace qlx::platform {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kNewFileMode = 0644;
// Another process holds the name for as long as its own save takes: a few milliseconds. One that is stuck, or
// somebody's lock on the name, must not hang the window.
constexpr int kTries = 100;
constexpr std::chrono::milliseconds kBetweenTries{10};

/// Without locks (some network file systems) saves are still whole, only not one after the other.
bool TakeLock(int descriptor) {
  return Retry([&] { return flock(descriptor, LOCK_EX | LOCK_NB); }) == 0 || errno != EWOULDBLOCK;
}

bool StillHasName(int descriptor, const fs::path& name) {
  struct stat opened {};
  struct stat named {};
  return fstat(descriptor, &opened) == 0 && lstat(name.c_str(), &named) == 0 &&
         opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
}

/// Removes what a crash left under `name`. Left alone when another process is writing it.
void RemoveLeftover(const fs::path& name) {
  struct stat found {};
  if (lstat(name.c_str(), &found) != 0) return;
  if (!S_ISREG(found.st_mode)) {
    unlink(name.c_str());
    return;
  }
  const Descriptor leftover(
      Retry([&] { return open(name.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK); }));
  const bool ours = leftover && TakeLock(leftover.number()) && StillHasName(leftover.number(), name);
  if (ours) unlink(name.c_str());
}

/// A new file under `name`, locked; none with errno set when the system refuses or the name stays taken.
Descriptor CreateLocked(const fs::path& name) {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  for (int i = 0; i < kTries; ++i) {
    Descriptor file(Retry([&] { return open(name.c_str(), kFlags, kNewFileMode); }));
    if (!file && errno != EEXIST) return file;
    // Between its creation and its lock another process may have taken the file for a leftover.
    if (file && TakeLock(file.number()) && StillHasName(file.number(), name)) return file;
    if (i > 0) std::this_thread::sleep_for(kBetweenTries);
    RemoveLeftover(name);
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

TemporaryFile::TemporaryFile(const fs::path& target)
    : target_(target), path_(target.native() + ".new"), file_(CreateLocked(path_)), on_disk_(file_) {
  if (!on_disk_) failure_ = WriteFailure{"open", errno};
}

TemporaryFile::~TemporaryFile() {
  if (on_disk_) unlink(path_.c_str());
}

bool TemporaryFile::TakeOwnerAndMode(const struct stat& old) {
  struct stat status {};
  if (fstat(file_.number(), &status) != 0) return false;
  const bool owned = status.st_uid == old.st_uid && status.st_gid == old.st_gid;
  if (!owned && fchown(file_.number(), old.st_uid, old.st_gid) != 0) return false;
  return fchmod(file_.number(), old.st_mode & 07777) == 0;
}

bool TemporaryFile::MakePrivate() {
  return fchmod(file_.number(), 0600) == 0;
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
  if (!file_.Close()) return WriteFailure{"close", errno};
  if (rename(path_.c_str(), target_.c_str()) != 0) return WriteFailure{"rename", errno};
  on_disk_ = false;
  FlushDirectory(target_.parent_path());
  return std::nullopt;
}

}  // namespace qlx::platform
