// The program under test as a process.
#pragma once

#include <optional>
#include <string>

#include <windows.h>

namespace qlx::driver {

/// As whom a program runs.
enum class Rights { kElevated, kOrdinary };

/// Ends the program, when it still runs, with itself.
class DrivenProcess {
 public:
  /// Starts `program` in `directory`; throws std::runtime_error when that fails.
  DrivenProcess(const std::wstring& program, const std::wstring& directory, Rights rights);
  DrivenProcess(const DrivenProcess&) = delete;
  DrivenProcess& operator=(const DrivenProcess&) = delete;
  ~DrivenProcess();

  DWORD id() const { return information_.dwProcessId; }
  /// Empty while it runs.
  std::optional<DWORD> ExitCode() const;
  void Kill();
  int CountThreads() const;

 private:
  PROCESS_INFORMATION information_{};
};

}  // namespace qlx::driver
