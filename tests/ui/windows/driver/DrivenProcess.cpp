#include "tests/ui/windows/driver/DrivenProcess.h"

#include <stdexcept>

#include <tlhelp32.h>

#include "platform/windows/Handle.h"

namespace qlx::driver {
namespace {

constexpr UINT kKilled = 137;

/// This process's token, which is elevated, or the one of the same user without elevation.
platform::Handle TokenOf(Rights rights) {
  HANDLE own = nullptr;
  OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &own);
  platform::Handle elevated(own);
  if (rights == Rights::kElevated) return elevated;
  TOKEN_LINKED_TOKEN linked{};
  DWORD size = sizeof linked;
  GetTokenInformation(elevated.get(), TokenLinkedToken, &linked, size, &size);
  return platform::Handle(linked.LinkedToken);
}

platform::Handle PrimaryToken(Rights rights) {
  HANDLE primary = nullptr;
  DuplicateTokenEx(TokenOf(rights).get(), TOKEN_ALL_ACCESS, nullptr, SecurityImpersonation, TokenPrimary,
                   &primary);
  return platform::Handle(primary);
}

}  // namespace

DrivenProcess::DrivenProcess(const std::wstring& program, const std::wstring& directory, Rights rights) {
  const platform::Handle token = PrimaryToken(rights);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  const auto start = [&] {
    return CreateProcessAsUserW(token.get(), program.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr,
                                directory.c_str(), &startup, &information_) != 0;
  };
  // Wine says so of a program that it ended before it began: see scripts/wine-start.
  if (start() || (GetLastError() == ERROR_INTERNAL_ERROR && start())) return;
  throw std::runtime_error("the program does not start: error " + std::to_string(GetLastError()));
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
