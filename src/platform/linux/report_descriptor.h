// What a HID device says of itself in its report descriptor.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace qlx::platform {

struct HidUsage {
  std::uint16_t page;
  std::uint16_t usage;
  bool operator==(const HidUsage&) const = default;
};

/// The usages of the top-level application collections of `descriptor`, in their order: USB Device Class
/// Definition for HID 1.11, section 6.2.2. A descriptor that ends in the middle of an item counts up to
/// there.
std::vector<HidUsage> TopLevelUsages(std::span<const std::uint8_t> descriptor);

}  // namespace qlx::platform
