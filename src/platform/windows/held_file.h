// Files that another process has open.
#pragma once

#include <algorithm>
#include <chrono>
#include <initializer_list>
#include <thread>

#include <windows.h>

namespace qlx::platform {

/// What `act` gives, which is false when it failed: repeated while the system's error is one of `held`. A
/// save, a scanner or a service holds a file for a few milliseconds; one that is stuck must not hang the
/// window.
template <typename Act>
auto UntilReleased(std::initializer_list<DWORD> held, Act act) {
  constexpr int kTries = 30;
  constexpr std::chrono::milliseconds kBetweenTries{10};
  auto result = act();
  for (int i = 1; i < kTries && !result; ++i) {
    if (std::ranges::find(held, GetLastError()) == held.end()) break;
    std::this_thread::sleep_for(kBetweenTries);
    result = act();
  }
  return result;
}

}  // namespace qlx::platform
