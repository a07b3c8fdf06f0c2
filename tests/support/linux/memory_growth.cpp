#include "tests/support/memory_growth.h"

#include <fstream>
#include <string>

#include "tests/support/growth_in_child.h"

namespace qlx::test {
namespace {

long PeakKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmPeak:")) return std::stol(line.substr(7));
  }
  return 0;
}

}  // namespace

std::optional<long> MemoryGrowth(const std::function<bool()>& work) {
  constexpr long kFailed = -1;
  bool done = false;
  const auto peak = [&done, started = false]() mutable {
    const bool first = !std::exchange(started, true);
    return first || done ? PeakKilobytes() : kFailed;
  };
  const long growth = testing::GrowthInChild(peak, [&] { done = work(); });
  return growth < 0 ? std::nullopt : std::optional(growth);
}

}  // namespace qlx::test
