#include "platform/windows/TemporaryFile.h"

#include <chrono>
#include <memory>
#include <thread>

#include <windows.h>
#include <aclapi.h>

#include "platform/windows/file_bytes.h"
#include "platform/windows/held_file.h"

namespace qlx::platform {
namespace {

// Another process holds the name for as long as its own save takes: a few milliseconds. One that is stuck
// must not hang the window.
constexpr int kTries = 100;
constexpr std::chrono::milliseconds kBetweenTries{10};

constexpr DWORD kAccess = GENERIC_WRITE | DELETE | READ_CONTROL | WRITE_DAC;
constexpr DWORD kKeptAttributes =
    FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

/// Removes what a crash left under `name`, unless another process is writing it. False with the system's
/// error set when the system refuses, so that the name can never be had.
bool RemoveLeftover(const std::wstring& name) {
  const DWORD attributes = GetFileAttributesW(name.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return GetLastError() == ERROR_FILE_NOT_FOUND;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return RemoveDirectoryW(name.c_str()) != 0;
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL);
  // Shared with nobody: it opens only when nobody else has it open.
  const Handle leftover(CreateFileW(name.c_str(), GENERIC_READ | DELETE, 0, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  const DWORD error = GetLastError();
  return leftover || error == ERROR_SHARING_VIOLATION || error == ERROR_FILE_NOT_FOUND;
}

/// A new file under `name`; none with the system's error set when the system refuses or the name stays taken.
Handle CreateAlone(const std::wstring& name) {
  for (int i = 0; i < kTries; ++i) {
    // Deleting is shared, because the rename opens the file a second time.
    Handle file(CreateFileW(name.c_str(), kAccess, FILE_SHARE_DELETE, nullptr, CREATE_NEW,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file || GetLastError() != ERROR_FILE_EXISTS) return file;
    if (i > 0) std::this_thread::sleep_for(kBetweenTries);
    if (!RemoveLeftover(name)) return Handle();
  }
  SetLastError(ERROR_FILE_EXISTS);
  return Handle();
}

struct FreeLocal {
  void operator()(void* memory) const { LocalFree(memory); }
};

/// What says who may do what with a file.
struct Rights {
  std::unique_ptr<void, FreeLocal> memory;
  PSID owner = nullptr;
  ACL* list = nullptr;
};

std::optional<Rights> RightsOf(const std::wstring& path) {
  Rights rights;
  void* memory = nullptr;
  constexpr SECURITY_INFORMATION kAsked = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
  const DWORD error = GetNamedSecurityInfoW(path.c_str(), SE_FILE_OBJECT, kAsked, &rights.owner, nullptr,
                                            &rights.list, nullptr, &memory);
  rights.memory.reset(memory);
  SetLastError(error);
  return error == ERROR_SUCCESS ? std::optional(std::move(rights)) : std::nullopt;
}

/// Entries that come from the directory come from it again, unless the file shuts them out.
SECURITY_INFORMATION Inheritance(const Rights& rights) {
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  GetSecurityDescriptorControl(rights.memory.get(), &control, &revision);
  return (control & SE_DACL_PROTECTED) != 0 ? PROTECTED_DACL_SECURITY_INFORMATION
                                            : UNPROTECTED_DACL_SECURITY_INFORMATION;
}

}  // namespace

WriteFailure Failed(const char* step) {
  return {step, static_cast<int>(GetLastError())};
}

TemporaryFile::TemporaryFile(const std::wstring& target)
    : target_(target), path_(target + L".new"), file_(CreateAlone(path_)), on_disk_(file_) {
  if (!on_disk_) failure_ = Failed("open");
}

TemporaryFile::~TemporaryFile() {
  if (!on_disk_) return;
  // By its handle: under the name there could be another process's by then.
  FILE_DISPOSITION_INFO gone{TRUE};
  SetFileInformationByHandle(file_.get(), FileDispositionInfo, &gone, sizeof gone);
}

std::optional<WriteFailure> TemporaryFile::TakeRightsOf(const std::wstring& old) {
  const auto rights = RightsOf(old);
  if (!rights) return Failed("owner");
  const DWORD error =
      SetSecurityInfo(file_.get(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | Inheritance(*rights), nullptr,
                      nullptr, rights->list, nullptr);
  if (error != ERROR_SUCCESS) return WriteFailure{"owner", static_cast<int>(error)};
  std::wstring path = path_;
  SetNamedSecurityInfoW(path.data(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, rights->owner, nullptr,
                        nullptr, nullptr);
  const DWORD attributes = GetFileAttributesW(old.c_str()) & kKeptAttributes;
  if (attributes != 0) SetFileAttributesW(path_.c_str(), attributes);
  return std::nullopt;
}

std::optional<WriteFailure> TemporaryFile::Append(std::string_view bytes) {
  return WriteAll(file_.get(), bytes) ? std::nullopt : std::optional(Failed("write"));
}

std::optional<WriteFailure> TemporaryFile::PutInPlace() {
  // Or the rename could reach the disk before the bytes, and a power cut leave an empty file.
  if (FlushFileBuffers(file_.get()) == 0) return Failed("flush");
  // With the file still open: a name that is free for a moment could get another process's half of a save.
  constexpr DWORD kHow = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  const bool renamed = UntilReleased({ERROR_SHARING_VIOLATION, ERROR_ACCESS_DENIED},
                                     [&] { return MoveFileExW(path_.c_str(), target_.c_str(), kHow) != 0; });
  if (!renamed) return Failed("rename");
  on_disk_ = false;
  return std::nullopt;
}

}  // namespace qlx::platform
