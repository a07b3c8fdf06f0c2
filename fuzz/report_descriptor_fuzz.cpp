// Any bytes as a HID report descriptor: its collections are told up to where it ends.
#include <algorithm>
#include <utility>

#include "fuzz/require.h"
#include "platform/linux/report_descriptor.h"

namespace {

using qlx::Require;

/// A byte that may begin a main item "Collection".
bool MayOpenCollection(std::uint8_t byte) {
  return (byte & 0xFC) == 0xA0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span descriptor(data, size);
  const auto usages = qlx::platform::TopLevelUsages(descriptor);
  Require(std::cmp_less_equal(usages.size(), std::ranges::count_if(descriptor, MayOpenCollection)));
  const auto of_half = qlx::platform::TopLevelUsages(descriptor.first(size / 2));
  Require(of_half.size() <= usages.size() &&
          std::ranges::equal(of_half, std::span(usages).first(of_half.size())));
  return 0;
}
