// Whether a program leaves handles behind.
#pragma once

#include <cstdint>

#include <windows.h>

namespace qlx::testing {

/// How many handles, about, are not closed again after `work`: the system gives a new handle the lowest
/// number that is free, and numbers lie 4 apart.
template <typename Work>
int HandleGrowth(Work work) {
  const auto next = [] {
    const HANDLE handle = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(handle);
    return reinterpret_cast<std::intptr_t>(handle);
  };
  const std::intptr_t before = next();
  work();
  return static_cast<int>((next() - before) / 4);
}

}  // namespace qlx::testing
