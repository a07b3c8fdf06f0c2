// The plugged-in USB devices that the drivers can serve, sorted by what they are.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "config/DeviceKind.h"
#include "platform/hid.h"
#include "ports/supported_devices.h"

namespace qlx {

struct UsbDevice {
  std::uint16_t vendor = 0;
  std::uint16_t product = 0;
  std::wstring serial;
  std::wstring name;
  bool operator==(const UsbDevice&) const = default;
};

/// Vendor or product identifier as the configuration file writes it: "0x" and four lower-case digits.
std::wstring FormatId(std::uint16_t id);

/// One thread at a time.
class UsbDevices {
 public:
  /// Without a library nothing is ever found.
  UsbDevices(std::unique_ptr<platform::HidLibrary> library, const SupportedDevices& supported)
      : library_(std::move(library)), supported_(supported) {}

  /// Looks anew. False, with what was found until then, when the walk did not come to its end or there is no
  /// library.
  bool Refresh();

  /// The devices that `kind` may choose from. None ever for the PCI cash drawer and the printer.
  const std::vector<UsbDevice>& ForKind(DeviceKind kind) const;

 private:
  void Sort(const platform::HidDevice& device);

  std::unique_ptr<platform::HidLibrary> library_;
  SupportedDevices supported_;
  /// Cash drawers, iButton readers, line displays, card readers, and the list that stays empty.
  std::array<std::vector<UsbDevice>, 5> lists_;
};

}  // namespace qlx
