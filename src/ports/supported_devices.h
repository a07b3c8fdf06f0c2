// The USB devices that the drivers serve.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

namespace qlx {

/// The vendor identifiers V1 and V2 and the product identifiers P1 to P16, from index 0.
struct SupportedDevices {
  std::array<std::uint16_t, 2> vendors;
  std::array<std::uint16_t, 16> products;

  /// Whether a device of this product drives both USB cash drawers by itself. The product alone decides, so
  /// no device of another kind may bear one of these two numbers.
  bool HoldsBothDrawers(std::uint16_t product) const {
    return product == products[1] || product == products[3];
  }

  bool operator==(const SupportedDevices&) const = default;
};

/// Neutral values from ranges kept for testing: the maker's to fill in.
inline constexpr SupportedDevices kSupportedDevices = {
    {0x1209, 0xF055},
    {0x0001, 0x0002, 0x0003, 0x0004, 0x0005, 0x0006, 0x0007, 0x0008, 0x0009, 0x000A, 0x000B, 0x000C, 0x000D,
     0x000E, 0x000F, 0x0010},
};

/// Takes what is wrong with a file, in words for the log.
using Complain = std::function<void(const std::string& complaint)>;

/// The maker's file `supported_devices` in `directory` (which ends in a separator): one XML element
/// `supported_devices` whose attributes V1, V2 and P1 to P16 hold "0x" and four hexadecimal digits. An
/// identifier that it does not give so stays that of kSupportedDevices and is complained of. Without the file
/// all of them stay, and there is nothing to complain of.
SupportedDevices ReadSupportedDevices(const std::wstring& directory, const Complain& complain);

/// Those of the suite's settings directory; complaints go to the log.
SupportedDevices InstalledSupportedDevices();

}  // namespace qlx
