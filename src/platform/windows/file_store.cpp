#include "platform/file_store.h"

#include <algorithm>
#include <utility>

#include <windows.h>

#include "platform/windows/Handle.h"
#include "platform/windows/TemporaryFile.h"
#include "platform/windows/file_bytes.h"
#include "platform/windows/final_path.h"
#include "platform/windows/held_file.h"

namespace qlx::platform {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::size_t kCopyBlock = std::size_t{64} << 10;
/// A file that is written in place is held in memory meanwhile, to be put back when the disk is full.
constexpr std::size_t kLargestInPlace = std::size_t{64} << 20;

Handle Open(const std::wstring& path, DWORD access) {
  return UntilReleased({ERROR_SHARING_VIOLATION}, [&] {
    return Handle(
        CreateFileW(path.c_str(), access, kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  });
}

bool NothingIsThere(DWORD error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

struct OpenedFile {
  ReadStatus status;
  Handle file;  ///< none unless `status` is kRead
};

OpenedFile OpenRegular(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES && NothingIsThere(GetLastError()))
    return {ReadStatus::kMissing, Handle()};
  const bool is_directory =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  if (is_directory) return {ReadStatus::kNotRegular, Handle()};
  Handle file = Open(path, GENERIC_READ);
  if (!file)
    return {NothingIsThere(GetLastError()) ? ReadStatus::kMissing : ReadStatus::kUnreadable, Handle()};
  if (GetFileType(file.get()) != FILE_TYPE_DISK) return {ReadStatus::kNotRegular, Handle()};
  return {ReadStatus::kRead, std::move(file)};
}

/// Where a save goes.
struct Target {
  std::wstring path;  ///< behind all links
  bool exists;
  std::optional<WriteFailure> failure;  ///< why nothing can be saved there
};

/// What is read-only or held by somebody who lets nobody write is no target, though a rename might get past
/// it.
Target FindTarget(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    const bool is_new = GetLastError() == ERROR_FILE_NOT_FOUND;
    return {path, false, is_new ? std::nullopt : std::optional(Failed("open"))};
  }
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
    return {path, true, WriteFailure{"open", ERROR_DIRECTORY}};
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0)
    return {path, true, WriteFailure{"open", ERROR_ACCESS_DENIED}};
  const Handle file = Open(path, GENERIC_WRITE);
  if (!file) return {path, true, Failed("open")};
  if (GetFileType(file.get()) != FILE_TYPE_DISK)
    return {path, true, WriteFailure{"open", ERROR_BAD_FILE_TYPE}};
  return {FinalPath(file.get()).value_or(path), true, std::nullopt};
}

bool Overwrite(HANDLE file, std::string_view bytes) {
  return SetFilePointerEx(file, LARGE_INTEGER{}, nullptr, FILE_BEGIN) != 0 && WriteAll(file, bytes) &&
         SetEndOfFile(file) != 0 && FlushFileBuffers(file) != 0;
}

/// For a directory that takes no new file. The old bytes go back when the new ones do not fit.
std::optional<WriteFailure> WriteInPlace(const std::wstring& target, std::string_view bytes) {
  const Handle file = Open(target, GENERIC_READ | GENERIC_WRITE);
  if (!file) return Failed("open");
  const auto old = ReadAll(file.get(), kLargestInPlace);
  if (!old) return Failed("read");
  if (old->size() > kLargestInPlace) return WriteFailure{"read", ERROR_FILE_TOO_LARGE};
  if (Overwrite(file.get(), bytes)) return std::nullopt;
  const WriteFailure failure = Failed("write");
  Overwrite(file.get(), *old);
  return failure;
}

/// What a directory answers that takes no new file, a file whose rights are not ours to copy, and one that
/// somebody has open who lets others write but not delete.
constexpr WriteFailure kInPlaceOnly[] = {
    {"open", ERROR_ACCESS_DENIED},
    {"owner", ERROR_ACCESS_DENIED},
    {"rename", ERROR_ACCESS_DENIED},
    {"rename", ERROR_SHARING_VIOLATION},
};

bool AllowsInPlaceOnly(const WriteFailure& failure) {
  return std::ranges::any_of(kInPlaceOnly, [&](const WriteFailure& known) {
    return failure.error == known.error && failure.step == std::string_view(known.step);
  });
}

std::optional<WriteFailure> ReplaceByRename(const Target& target, std::string_view bytes) {
  TemporaryFile temporary(target.path);
  if (temporary.failure()) return temporary.failure();
  if (target.exists) {
    if (const auto failure = temporary.TakeRightsOf(target.path)) return failure;
  }
  if (const auto failure = temporary.Append(bytes)) return failure;
  return temporary.PutInPlace();
}

std::optional<WriteFailure> CopyBytes(HANDLE source, TemporaryFile& copy) {
  std::string block(kCopyBlock, '\0');
  for (;;) {
    const auto got = ReadSome(source, block.data(), block.size());
    if (!got) return Failed("read");
    if (*got == 0) return copy.PutInPlace();
    if (const auto failure = copy.Append({block.data(), *got})) return failure;
  }
}

class WindowsFileStore final : public FileStore {
 public:
  ReadResult Read(const std::wstring& path, std::size_t limit) const override {
    const OpenedFile opened = OpenRegular(path);
    if (opened.status != ReadStatus::kRead) return {opened.status, {}};
    auto bytes = ReadAll(opened.file.get(), limit);
    if (!bytes) return {ReadStatus::kUnreadable, {}};
    if (bytes->size() > limit) return {ReadStatus::kTooLarge, {}};
    return {ReadStatus::kRead, std::move(*bytes)};
  }

  std::optional<WriteFailure> Replace(const std::wstring& path, std::string_view bytes) override {
    const Target target = FindTarget(path);
    if (target.failure) return target.failure;
    const auto failure = ReplaceByRename(target, bytes);
    return failure && target.exists && AllowsInPlaceOnly(*failure) ? WriteInPlace(target.path, bytes)
                                                                   : failure;
  }

  std::optional<WriteFailure> Copy(const std::wstring& path, const std::wstring& copy) override {
    const OpenedFile source = OpenRegular(path);
    if (source.status != ReadStatus::kRead) return WriteFailure{"read", ERROR_READ_FAULT};
    TemporaryFile temporary(copy);
    if (temporary.failure()) return temporary.failure();
    temporary.TakeRightsOf(path);  // where they cannot be read, those of the directory have to do
    return CopyBytes(source.file.get(), temporary);
  }
};

}  // namespace

FileStore& SystemFileStore() {
  static WindowsFileStore store;
  return store;
}

}  // namespace qlx::platform
