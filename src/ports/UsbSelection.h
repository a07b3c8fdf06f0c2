// The choice of a port and, for the USB cash drawers, of the devices behind it, without its window.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/DeviceKind.h"
#include "ports/UsbDevices.h"
#include "ports/UsbIdentity.h"
#include "ports/supported_devices.h"

namespace qlx {

/// What the selection starts from and what it gives back.
struct UsbChoice {
  std::wstring port{};
  UsbIdentity first{};
  UsbIdentity second{};  ///< of the USB cash drawers only
  bool operator==(const UsbChoice&) const = default;
};

/// How the selection looks for a kind of device. An empty second label stands for no second group.
struct UsbSelectionLook {
  std::wstring_view title;
  std::wstring_view first_label;
  std::wstring_view second_label;
  bool devices_enabled;
};

const UsbSelectionLook& LookOf(DeviceKind kind);

/// Items of a device list count from 0, "Auto"; item n is device n - 1. User-interface thread.
class UsbSelection {
 public:
  /// The identities of `current` stay until the user chooses, also those of devices that are not plugged in.
  UsbSelection(DeviceKind kind, std::vector<std::wstring> ports, std::vector<UsbDevice> devices,
               const SupportedDevices& supported, UsbChoice current);

  const std::vector<std::wstring>& ports() const { return ports_; }
  /// Empty while no port is chosen.
  std::optional<std::size_t> port_item() const { return port_item_; }
  void ChoosePort(std::size_t item) { port_item_ = item; }

  /// "Auto" and a letter a device. After z the letters go on by their codes: "{", "|" and so on.
  std::vector<std::wstring> DeviceItems() const;

  std::size_t first_item() const { return first_item_; }
  std::size_t second_item() const { return second_item_; }
  const UsbIdentity& first() const { return first_; }
  const UsbIdentity& second() const { return second_; }
  bool second_enabled() const { return second_enabled_; }

  /// Throws std::out_of_range for an item that the list does not have.
  void ChooseFirst(std::size_t item);
  void ChooseSecond(std::size_t item);

  UsbChoice Result() const;

 private:
  std::size_t ItemOf(const UsbIdentity& identity) const;
  bool HoldsBothDrawers(std::size_t item) const;
  void SetFirst(std::size_t item);
  void SetSecond(std::size_t item);

  bool has_choice_;  ///< of devices: for the USB cash drawers
  std::vector<std::wstring> ports_;
  std::vector<UsbDevice> devices_;
  SupportedDevices supported_;
  std::optional<std::size_t> port_item_;
  UsbIdentity first_;
  UsbIdentity second_;
  std::size_t first_item_ = 0;
  std::size_t second_item_ = 0;
  bool second_enabled_;
};

}  // namespace qlx
