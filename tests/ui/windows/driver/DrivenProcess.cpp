#include "tests/ui/windows/driver/DrivenProcess.h"

#include <stdexcept>

#include <tlhelp32.h>

namespace qlx::driver {
namespace {

constexpr UINT kKilled = 137;

}  // namespace

DrivenProcess::DrivenProcess(const std::wstring& program, const std::wstring& directory) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  if (CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, directory.c_str(),
                     &startup, &information_) == 0) {
    throw std::runtime_error("the program does not start: error " + std::to_string(GetLastError()));
  }
}

DrivenProcess::~DrivenProcess() {
  Kill();
  CloseHandle(information_.hThread);
  CloseHandle(information_.hProcess);
}

std::optional<DWORD> DrivenProcess::ExitCode() const {
  DWORD code = 0;
  const bool running = WaitForSingleObject(information_.hProcess, 0) == WAIT_TIMEOUT;
  if (running || GetExitCodeProcess(information_.hProcess, &code) == 0) return std::nullopt;
  return code;
}

void DrivenProcess::Kill() {
  TerminateProcess(information_.hProcess, kKilled);
  WaitForSingleObject(information_.hProcess, INFINITE);
}

int DrivenProcess::CountThreads() const {
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 thread{};
  thread.dwSize = sizeof thread;
  int count = 0;
  for (BOOL more = Thread32First(snapshot, &thread); more != 0; more = Thread32Next(snapshot, &thread)) {
    count += thread.th32OwnerProcessID == id() ? 1 : 0;
  }
  CloseHandle(snapshot);
  return count;
}

}  // namespace qlx::driver
