// Reading and replacing whole files so that no moment exists at which a crash loses them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qlx::platform {

enum class ReadStatus {
  kRead,
  kMissing,
  kNotRegular,  ///< a directory, pipe, socket or device stands in the file's place
  kTooLarge,
  kUnreadable,
};

struct ReadResult {
  ReadStatus status;
  std::string bytes;  ///< empty unless kRead
};

/// The step of a write that failed and the system's error number for it.
struct WriteFailure {
  const char* step;
  int error;
};

/// Used from one thread. Paths are wide text as Program gives them.
class FileStore {
 public:
  virtual ~FileStore() = default;

  /// The bytes of the regular file `path`, at most `limit` of them. Never blocks on a pipe or device.
  virtual ReadResult Read(const std::wstring& path, std::size_t limit) const = 0;

  /// Puts `bytes` in the place of the file `path`: beside it first, then by one rename, so that a crash or a
  /// full disk leaves the old file or the new one, whole. Follows a symbolic link; keeps mode and owner.
  /// Where only the file can be written, not its directory, it is written in place. A file that exists and is
  /// not writable is a failure. Empty on success; after a failure the old file stands and nothing is left
  /// beside it.
  virtual std::optional<WriteFailure> Replace(const std::wstring& path, std::string_view bytes) = 0;

  /// Puts a copy of the file `path`, with its mode and owner, in the place of `copy`, as safely.
  virtual std::optional<WriteFailure> Copy(const std::wstring& path, const std::wstring& copy) = 0;
};

FileStore& SystemFileStore();

}  // namespace qlx::platform
