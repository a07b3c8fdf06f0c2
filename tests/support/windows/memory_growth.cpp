#include "tests/support/memory_growth.h"

#include <windows.h>
#include <winternl.h>

namespace qlx::test {
namespace {

/// What the system counts of a process's memory, as far as it is needed.
struct Counters {
  SIZE_T peak_virtual_size;
  SIZE_T virtual_size;
  ULONG page_faults;
  SIZE_T others[8];
};
constexpr auto kCounters = static_cast<PROCESSINFOCLASS>(3);

Counters Count() {
  Counters counters{};
  NtQueryInformationProcess(GetCurrentProcess(), kCounters, &counters, sizeof counters, nullptr);
  return counters;
}

}  // namespace

/// The peak never falls: what was larger before hides what comes now. Each case of a test has its own
/// process.
std::optional<long> MemoryGrowth(const std::function<bool()>& work) {
  const SIZE_T before = Count().peak_virtual_size;
  if (!work()) return std::nullopt;
  return static_cast<long>((Count().peak_virtual_size - before) >> 10);
}

}  // namespace qlx::test
