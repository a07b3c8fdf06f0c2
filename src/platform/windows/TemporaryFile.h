// The file that a save fills beside the one it replaces.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/file_store.h"
#include "platform/windows/Handle.h"

namespace qlx::platform {

/// `target` with ".new" behind, created empty by this object and removed by it unless it was put in place.
/// Nobody else can open it while it lives, so that two processes that save the same file do so one after the
/// other.
class TemporaryFile {
 public:
  /// What a crash left under the name is removed. failure() tells whether the file is there.
  explicit TemporaryFile(const std::wstring& target);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  const std::optional<WriteFailure>& failure() const { return failure_; }

  /// Gives the file the access rights and attributes of the file `old`, and its owner where this user may.
  std::optional<WriteFailure> TakeRightsOf(const std::wstring& old);

  std::optional<WriteFailure> Append(std::string_view bytes);
  /// Flushes the file and renames it over the target.
  std::optional<WriteFailure> PutInPlace();

 private:
  std::wstring target_;
  std::wstring path_;
  Handle file_;
  std::optional<WriteFailure> failure_;
  bool on_disk_;
};

/// The step and the system's last error.
WriteFailure Failed(const char* step);

}  // namespace qlx::platform
