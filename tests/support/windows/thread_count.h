// How many threads the program has.
#pragma once

#include <cstddef>

#include <windows.h>
#include <tlhelp32.h>

namespace qlx::testing {

inline std::size_t ThreadCount() {
  const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  std::size_t count = 0;
  THREADENTRY32 thread{};
  thread.dwSize = sizeof thread;
  for (BOOL more = Thread32First(all, &thread); more != FALSE; more = Thread32Next(all, &thread)) {
    if (thread.th32OwnerProcessID == GetCurrentProcessId()) ++count;
  }
  CloseHandle(all);
  return count;
}

}  // namespace qlx::testing
