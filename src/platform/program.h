// What the operating system tells the running program about itself.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qlx::platform {

/// A moment: whole seconds since 1970-01-01 00:00 UTC and the milliseconds 0 to 999 past them.
struct WallTime {
  std::int64_t seconds = 0;
  std::uint16_t milliseconds = 0;
};

/// Facts about the running process. Every operation may be called from any thread.
class Program {
 public:
  virtual ~Program() = default;

  /// The path of `file_name` in the executable's own directory. Empty when the program's own name cannot be
  /// read or the joined path is longer than the platform holds.
  virtual std::optional<std::wstring> PathBesideExecutable(std::wstring_view file_name) const = 0;

  /// True when `path` names one fixed place on this platform, whatever the current directory is.
  virtual bool IsAbsolutePath(std::wstring_view path) const = 0;

  virtual std::uint32_t ProcessId() const = 0;
  /// The identifier that the system gives the calling thread.
  virtual std::uint32_t ThreadId() const = 0;
  virtual WallTime Now() const = 0;
};

/// The running process; lives as long as the process.
const Program& ThisProgram();

}  // namespace qlx::platform
