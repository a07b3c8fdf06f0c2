// The file that a save fills beside the one it replaces.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include <sys/stat.h>

#include "platform/file_store.h"
#include "platform/linux/Descriptor.h"

namespace qlx::platform {

/// `target` with ".new" behind, created empty by this object and removed by it unless it was put in place.
/// It is locked while it lives, so that two processes that save the same file do so one after the other.
class TemporaryFile {
 public:
  /// What a crash left under the name is removed. `mode` is cut by the umask. failure() tells whether the
  /// file is there.
  TemporaryFile(const std::filesystem::path& target, mode_t mode);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  const std::optional<WriteFailure>& failure() const { return failure_; }

  /// Gives the file the owner and mode of `old`.
  std::optional<WriteFailure> TakeOwnerAndMode(const struct stat& old);

  std::optional<WriteFailure> Append(std::string_view bytes);
  /// Flushes and closes the file and renames it over the target.
  std::optional<WriteFailure> PutInPlace();

 private:
  std::filesystem::path target_;
  std::filesystem::path path_;
  Descriptor file_;
  std::optional<WriteFailure> failure_;
  bool on_disk_;
};

/// Writes all of `bytes` to `descriptor`; false with errno set when the system takes no more.
bool WriteAll(int descriptor, std::string_view bytes);
/// True when everything written to `descriptor` is on the disk.
bool Flush(int descriptor);

}  // namespace qlx::platform
