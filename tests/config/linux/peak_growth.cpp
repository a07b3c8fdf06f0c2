#include "tests/config/peak_growth.h"

#include <sys/resource.h>

#include "tests/support/growth_in_child.h"

namespace qlx {
namespace {

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

}  // namespace

std::size_t PeakGrowth(const std::function<void()>& work) {
  return static_cast<std::size_t>(testing::GrowthInChild(PeakKilobytes, work)) * 1024;
}

}  // namespace qlx
