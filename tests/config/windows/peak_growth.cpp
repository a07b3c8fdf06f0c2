#include "tests/config/peak_growth.h"

#include <windows.h>
#include <psapi.h>

namespace qlx {
namespace {

std::size_t PeakBytes() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PeakWorkingSetSize;
}

}  // namespace

std::size_t PeakGrowth(const std::function<void()>& work) {
  const std::size_t before = PeakBytes();
  work();
  return PeakBytes() - before;
}

}  // namespace qlx
