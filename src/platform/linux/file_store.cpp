#include "platform/file_store.h"

#include <cerrno>
#include <filesystem>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/debug_output.h"
#include "platform/linux/path_text.h"

namespace qlx::platform {
namespace {

namespace fs = std::filesystem;

constexpr int kLongestLinkChain = 40;  // as the kernel's own
constexpr mode_t kNewFileMode = 0644;

/// Calls again while a signal interrupts.
template <typename Call>
auto Retry(Call call) {
  decltype(call()) result;
  do {
    result = call();
  } while (result < 0 && errno == EINTR);
  return result;
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { Close(); }

  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }

  /// Some file systems report a failed write only here. Interrupted counts as closed: Linux frees the number.
  bool Close() {
    const int number = std::exchange(number_, -1);
    return number < 0 || close(number) == 0 || errno == EINTR;
  }

 private:
  int number_;
};

WriteFailure Failed(const char* step) {
  return {step, errno};
}

std::optional<struct stat> StatusOf(const fs::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

/// Where a chain of symbolic links ends, whether or not a file is there.
fs::path LinkTarget(fs::path path) {
  std::error_code failed;
  for (int i = 0; i < kLongestLinkChain && fs::is_symlink(path, failed); ++i) {
    const fs::path next = fs::read_symlink(path, failed);
    if (failed) break;
    path = next.is_absolute() ? next : path.parent_path() / next;
  }
  return path;
}

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

/// Makes the rename itself survive a power cut. Too late to take anything back, so a failure is only told.
void FlushDirectory(const fs::path& directory) {
  const Descriptor opened(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened && Flush(opened.number())) return;
  SystemDebugOutput().Write(L"[MZP]: the directory could not be flushed: " + PathText(directory.native()));
}

/// Opens the temporary file, empty and locked against another process that saves the same file. What a crash
/// left there is used again; anything but a file is removed first.
int OpenTemporary(const fs::path& temporary) {
  for (;;) {
    const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const int number = Retry([&] { return open(temporary.c_str(), flags, kNewFileMode); });
    if (number < 0 && (errno == ELOOP || errno == ENXIO) && unlink(temporary.c_str()) == 0) continue;
    if (number < 0 || Retry([&] { return flock(number, LOCK_EX); }) != 0) return number;
    struct stat opened {};
    fstat(number, &opened);
    const auto named = StatusOf(temporary);
    const bool same = named && named->st_ino == opened.st_ino && named->st_dev == opened.st_dev;
    if (same && S_ISREG(opened.st_mode) && ftruncate(number, 0) == 0) return number;
    close(number);
    if (same && unlink(temporary.c_str()) != 0) return -1;
  }
}

/// Gives the new file the old one's owner and mode; without the rights for that the caller writes in place.
bool KeepOwnerAndMode(int descriptor, const struct stat& old) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return false;
  const bool owned = status.st_uid == old.st_uid && status.st_gid == old.st_gid;
  if (!owned && fchown(descriptor, old.st_uid, old.st_gid) != 0) return false;
  return fchmod(descriptor, old.st_mode & 07777) == 0;
}

/// Removes the temporary file unless it has been renamed.
class Temporary {
 public:
  explicit Temporary(fs::path path) : path_(std::move(path)), file_(OpenTemporary(path_)) {}
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;
  ~Temporary() {
    if (opened_) unlink(path_.c_str());
  }

  bool opened() const { return opened_; }
  int descriptor() const { return file_.number(); }

  std::optional<WriteFailure> Write(std::string_view bytes) {
    if (!WriteAll(file_.number(), bytes)) return Failed("write");
    if (!Flush(file_.number())) return Failed("flush");  // or the rename may reach the disk before the bytes
    // Checked before the rename; the second descriptor holds the lock until then.
    lock_ = Descriptor(fcntl(file_.number(), F_DUPFD_CLOEXEC, 0));
    if (!file_.Close()) return Failed("close");
    return std::nullopt;
  }

  std::optional<WriteFailure> RenameTo(const fs::path& target) {
    if (rename(path_.c_str(), target.c_str()) != 0) return Failed("rename");
    opened_ = false;
    FlushDirectory(target.parent_path());
    return std::nullopt;
  }

 private:
  fs::path path_;
  Descriptor file_;
  Descriptor lock_{-1};
  bool opened_ = static_cast<bool>(file_);
};

std::optional<std::string> ReadAll(int descriptor, std::size_t size_hint, std::size_t limit) {
  std::string bytes(std::min(size_hint, limit) + 1, '\0');
  std::size_t filled = 0;
  for (;;) {
    const ssize_t got = Retry([&] { return read(descriptor, bytes.data() + filled, bytes.size() - filled); });
    if (got < 0) return std::nullopt;
    filled += static_cast<std::size_t>(got);
    if (got == 0 || filled > limit) break;
    if (filled == bytes.size()) bytes.resize(bytes.size() * 2);
  }
  bytes.resize(filled);
  return bytes;
}

/// For a directory that takes no new file. The old bytes go back when the new ones do not fit.
std::optional<WriteFailure> WriteInPlace(const fs::path& target, std::string_view bytes) {
  Descriptor file(Retry([&] { return open(target.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK); }));
  if (!file) return Failed("open");
  const auto old = ReadAll(file.number(), 0, std::numeric_limits<std::size_t>::max() / 4);
  if (!old) return Failed("read");
  const auto put = [&](std::string_view content) {
    return lseek(file.number(), 0, SEEK_SET) == 0 && WriteAll(file.number(), content) &&
           ftruncate(file.number(), static_cast<off_t>(content.size())) == 0 && Flush(file.number());
  };
  if (put(bytes)) return std::nullopt;
  const WriteFailure failure = Failed("write");
  put(*old);
  return failure;
}

std::optional<WriteFailure> ReplaceTarget(const fs::path& target, std::string_view bytes,
                                          const std::optional<struct stat>& old) {
  Temporary temporary(target.native() + ".new");
  const bool in_place = !temporary.opened() && (errno == EACCES || errno == EPERM);
  if (!temporary.opened() && !(in_place && old)) return Failed("open");
  if (in_place || (old && !KeepOwnerAndMode(temporary.descriptor(), *old)))
    return WriteInPlace(target, bytes);
  if (const auto failure = temporary.Write(bytes)) return failure;
  return temporary.RenameTo(target);
}

class LinuxFileStore final : public FileStore {
 public:
  ReadResult Read(const std::wstring& path, std::size_t limit) const override {
    const fs::path name = PathBytes(path);
    const auto status = StatusOf(name);
    if (!status)
      return {errno == ENOENT || errno == ENOTDIR ? ReadStatus::kMissing : ReadStatus::kUnreadable, {}};
    // Asked before the open too: to open a device can have effects of its own.
    if (!S_ISREG(status->st_mode)) return {ReadStatus::kNotRegular, {}};
    if (static_cast<std::size_t>(status->st_size) > limit) return {ReadStatus::kTooLarge, {}};
    const Descriptor file(Retry([&] { return open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    struct stat opened {};
    if (!file || fstat(file.number(), &opened) != 0) return {ReadStatus::kUnreadable, {}};
    if (!S_ISREG(opened.st_mode)) return {ReadStatus::kNotRegular, {}};
    auto bytes = ReadAll(file.number(), static_cast<std::size_t>(opened.st_size), limit);
    if (!bytes) return {ReadStatus::kUnreadable, {}};
    if (bytes->size() > limit) return {ReadStatus::kTooLarge, {}};
    return {ReadStatus::kRead, std::move(*bytes)};
  }

  std::optional<WriteFailure> Replace(const std::wstring& path, std::string_view bytes) override {
    const fs::path target = LinkTarget(PathBytes(path));
    const auto old = StatusOf(target);
    if (old && !S_ISREG(old->st_mode)) return WriteFailure{"open", EISDIR};
    if (old && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return Failed("open");
    return ReplaceTarget(target, bytes, old);
  }

  std::optional<WriteFailure> Copy(const std::wstring& path, const std::wstring& copy) override {
    const auto status = StatusOf(PathBytes(path));
    if (!status) return Failed("open");
    const ReadResult source = Read(path, std::numeric_limits<std::size_t>::max() / 4);
    if (source.status != ReadStatus::kRead) return WriteFailure{"read", EIO};
    Temporary temporary(PathBytes(copy) + ".new");
    if (!temporary.opened()) return Failed("open");
    // A copy that could not get the owner still must not be readable by more people than the original.
    if (!KeepOwnerAndMode(temporary.descriptor(), *status)) fchmod(temporary.descriptor(), 0600);
    if (const auto failure = temporary.Write(source.bytes)) return failure;
    return temporary.RenameTo(PathBytes(copy));
  }
};

}  // namespace

FileStore& SystemFileStore() {
  static LinuxFileStore store;
  return store;
}

}  // namespace qlx::platform
