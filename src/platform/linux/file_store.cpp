#include "platform/file_store.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/linux/Descriptor.h"
#include "platform/linux/TemporaryFile.h"
#include "platform/linux/path_text.h"
#include "platform/linux/regular_file.h"

namespace qlx::platform {
namespace {

namespace fs = std::filesystem;

constexpr int kLongestLinkChain = 40;  // as the kernel's own
constexpr mode_t kNewFileMode = 0644;
/// Until the file has its owner: who opens it meanwhile could read on after the mode has changed.
constexpr mode_t kPrivateMode = 0600;
constexpr std::size_t kCopyBlock = std::size_t{64} << 10;
/// A file that is written in place is held in memory meanwhile, to be put back when the disk is full.
constexpr std::size_t kLargestInPlace = std::size_t{64} << 20;

WriteFailure Failed(const char* step) {
  return {step, errno};
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

bool Overwrite(int descriptor, std::string_view bytes) {
  return lseek(descriptor, 0, SEEK_SET) == 0 && WriteAll(descriptor, bytes) &&
         Retry([&] { return ftruncate(descriptor, static_cast<off_t>(bytes.size())); }) == 0 &&
         Flush(descriptor);
}

/// For a directory that takes no new file. The old bytes go back when the new ones do not fit.
std::optional<WriteFailure> WriteInPlace(const fs::path& target, std::string_view bytes) {
  Descriptor file(Retry([&] { return open(target.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK); }));
  if (!file) return Failed("open");
  const auto old = ReadAll(file.number(), bytes.size(), kLargestInPlace);
  if (!old) return Failed("read");
  if (old->size() > kLargestInPlace) return WriteFailure{"read", EFBIG};
  if (Overwrite(file.number(), bytes) && file.Close()) return std::nullopt;
  const WriteFailure failure = Failed("write");
  Descriptor again(Retry([&] { return open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK); }));
  if (again) Overwrite(again.number(), *old);
  return failure;
}

/// What a directory answers that takes no new file, an owner that is not ours to give away, and a file that
/// cannot be renamed over because it is mounted by itself or its directory keeps others' files.
constexpr WriteFailure kInPlaceOnly[] = {
    {"open", EACCES},  {"open", EPERM},   {"open", EROFS},    {"owner", EPERM},
    {"rename", EPERM}, {"rename", EBUSY}, {"rename", EACCES},
};

bool AllowsInPlaceOnly(const WriteFailure& failure) {
  return std::ranges::any_of(kInPlaceOnly, [&](const WriteFailure& known) {
    return failure.error == known.error && failure.step == std::string_view(known.step);
  });
}

std::optional<WriteFailure> ReplaceByRename(const fs::path& target, std::string_view bytes,
                                            const std::optional<struct stat>& old) {
  TemporaryFile temporary(target, old ? kPrivateMode : kNewFileMode);
  if (temporary.failure()) return temporary.failure();
  if (old) {
    if (const auto failure = temporary.TakeOwnerAndMode(*old)) return failure;
  }
  if (const auto failure = temporary.Append(bytes)) return failure;
  return temporary.PutInPlace();
}

std::optional<WriteFailure> CopyBytes(int source, TemporaryFile& copy) {
  std::string block(kCopyBlock, '\0');
  for (;;) {
    const ssize_t got = Retry([&] { return read(source, block.data(), block.size()); });
    if (got < 0) return Failed("read");
    if (got == 0) return copy.PutInPlace();
    if (const auto failure = copy.Append({block.data(), static_cast<std::size_t>(got)})) return failure;
  }
}

class LinuxFileStore final : public FileStore {
 public:
  ReadResult Read(const std::wstring& path, std::size_t limit) const override {
    const OpenedFile file = OpenRegular(PathBytes(path));
    if (file.status != ReadStatus::kRead) return {file.status, {}};
    const auto size = static_cast<std::size_t>(file.info.st_size);
    if (size > limit) return {ReadStatus::kTooLarge, {}};
    auto bytes = ReadAll(file.descriptor.number(), size, limit);
    if (!bytes) return {ReadStatus::kUnreadable, {}};
    if (bytes->size() > limit) return {ReadStatus::kTooLarge, {}};
    return {ReadStatus::kRead, std::move(*bytes)};
  }

  std::optional<WriteFailure> Replace(const std::wstring& path, std::string_view bytes) override {
    const fs::path target = LinkTarget(PathBytes(path));
    const auto old = StatusOf(target);
    if (!old && errno != ENOENT) return Failed("open");  // a circle of links, for one
    if (old && !S_ISREG(old->st_mode)) return WriteFailure{"open", EISDIR};
    if (old && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return Failed("open");
    const auto failure = ReplaceByRename(target, bytes, old);
    return failure && old && AllowsInPlaceOnly(*failure) ? WriteInPlace(target, bytes) : failure;
  }

  std::optional<WriteFailure> Copy(const std::wstring& path, const std::wstring& copy) override {
    const OpenedFile source = OpenRegular(PathBytes(path));
    if (source.status != ReadStatus::kRead) return WriteFailure{"read", EIO};
    TemporaryFile temporary(PathBytes(copy), kPrivateMode);
    if (temporary.failure()) return temporary.failure();
    // Best effort: without the right to give the owner away the copy stays private.
    temporary.TakeOwnerAndMode(source.info);
    return CopyBytes(source.descriptor.number(), temporary);
  }
};

}  // namespace

FileStore& SystemFileStore() {
  static LinuxFileStore store;
  return store;
}

}  // namespace qlx::platform
