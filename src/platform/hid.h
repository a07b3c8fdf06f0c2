// The USB HID devices that are plugged in.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace qlx::platform {

/// One top-level collection of one device. Texts hold at most 127 UTF-16 code units, as a buffer of 256 bytes
/// does; numbers and texts that cannot be read are 0 and empty.
struct HidDevice {
  std::uint16_t vendor = 0;
  std::uint16_t product = 0;
  std::uint16_t usage_page = 0;
  std::uint16_t usage = 0;
  std::wstring serial;
  std::wstring name;
};

/// The system's HID functions. One thread at a time in the whole process.
class HidLibrary {
 public:
  virtual ~HidLibrary() = default;

  /// Calls `found` for every top-level collection of every device that is present now, in the system's order.
  /// A device that cannot be looked at is left out. False when the walk did not come to its end.
  virtual bool Walk(const std::function<void(const HidDevice&)>& found) = 0;
};

/// Binds the functions at run time; null when the library or one of its functions is missing.
std::unique_ptr<HidLibrary> BindHidLibrary();

}  // namespace qlx::platform
