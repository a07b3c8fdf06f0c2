// A USB device as the configuration file knows it.
#pragma once

#include <string>

namespace qlx {

/// Identifiers in the form "0x%04x", and the serial number; empty texts for no particular device.
struct UsbIdentity {
  std::wstring vendor;
  std::wstring product;
  std::wstring serial;
  bool operator==(const UsbIdentity&) const = default;
};

}  // namespace qlx
