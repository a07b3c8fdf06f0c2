// A service of the test's own in the system's service manager.
#pragma once

#include <filesystem>
#include <string>

#include <windows.h>

#include "platform/windows/Handle.h"

namespace qlx::test {

/// What the stub behind a service does besides starting and stopping as it is told.
enum class StubBehaviour { kGood, kRefusesToStop, kHangsStarting, kHangsStopping, kDies };

/// Installed and stopped at first; gone, whatever it did, when this object ends.
class InstalledService {
 public:
  /// The stub writes "NAME asked to start", "NAME asked to stop" and "NAME stopped" into `journal`. Throws
  /// when there is such a service already.
  InstalledService(const std::wstring& name, const std::filesystem::path& journal,
                   StubBehaviour behaviour = StubBehaviour::kGood);
  InstalledService(const InstalledService&) = delete;
  InstalledService& operator=(const InstalledService&) = delete;
  ~InstalledService();

  /// Starts it by other means than the code under test and waits until it runs.
  void Start();

  /// The manager's number for the state that it is in.
  DWORD state() const { return Status().dwCurrentState; }
  DWORD process_id() const { return Status().dwProcessId; }

  /// True once it is in `state`; false when it is not within 20 seconds.
  bool Await(DWORD state) const;

  /// Lets it go on from where it hangs; one that only runs ends.
  void LetGo();

  /// Nobody can start it from now on.
  void Disable();

  /// Its program is no longer there.
  void LoseProgram();

 private:
  SERVICE_STATUS_PROCESS Status() const;

  SC_HANDLE manager_;
  SC_HANDLE service_;
  platform::Handle let_go_;
  platform::Handle over_;  ///< lets the stub's processes end, also the one of a service that has stopped
};

}  // namespace qlx::test
