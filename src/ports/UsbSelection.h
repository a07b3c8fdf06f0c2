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

/// Items of a device list count from 0, "Auto". User-interface thread.
class UsbSelection {
 public:
  /// The identities of `current` stay until the user chooses, also those of devices that are not plugged in.
  UsbSelection(DeviceKind kind, std::vector<std::wstring> ports, const std::vector<UsbDevice>& devices,
               const SupportedDevices& supported, UsbChoice current);

  /// Takes what is plugged in by now. What is chosen stays chosen and offered, also when it has gone; a
  /// stored device that has come is chosen, as it is from the start on.
  void TakePresent(std::vector<std::wstring> ports, const std::vector<UsbDevice>& devices);

  const std::vector<std::wstring>& ports() const { return ports_; }
  /// Empty while no port is chosen.
  std::optional<std::size_t> port_item() const { return port_item_; }
  /// False for a chosen port that has gone.
  bool port_present() const;
  void ChoosePort(std::size_t item);

  /// "Auto" and a letter a device, which keeps it as long as the selection lives, also when others go and
  /// when it comes back. After z the letters go on by their codes: "{", "|" and so on.
  std::vector<std::wstring> DeviceItems() const;

  std::size_t first_item() const { return ItemOf(first_); }
  std::size_t second_item() const { return ItemOf(second_); }
  const UsbIdentity& first() const { return first_.identity; }
  const UsbIdentity& second() const { return second_.identity; }
  /// False for the identity of a device that is not plugged in; true for none, which any device fits.
  bool first_present() const { return IsPresent(first_.identity); }
  bool second_present() const { return IsPresent(second_.identity); }
  bool second_enabled() const { return second_enabled_; }

  /// Throws std::out_of_range for an item that the list does not have.
  void ChooseFirst(std::size_t item) { TakeFirst(OfferedDevices().at(item)); }
  void ChooseSecond(std::size_t item) { TakeSecond(OfferedDevices().at(item)); }

  UsbChoice Result() const;

 private:
  /// Devices are numbered from 1 in the order in which they came, for good; 0 is "Auto".
  struct Chosen {
    UsbIdentity identity;
    std::size_t device = 0;
  };
  struct Seen {
    UsbDevice device;
    bool present;
  };

  void OfferPorts(const std::wstring* chosen);
  void TakeDevices(const std::vector<UsbDevice>& devices);
  void ChooseStored();
  /// The numbers behind the items.
  std::vector<std::size_t> OfferedDevices() const;
  std::size_t ItemOf(const Chosen& chosen) const;
  std::size_t NumberOf(const UsbIdentity& identity) const;
  bool IsPresent(const UsbIdentity& identity) const;
  bool HoldsBothDrawers(std::size_t number) const;
  void TakeFirst(std::size_t number);
  void TakeSecond(std::size_t number);
  Chosen Choice(std::size_t number) const;

  bool has_choice_;  ///< of devices: for the USB cash drawers
  SupportedDevices supported_;
  std::vector<std::wstring> present_ports_;
  std::vector<std::wstring> ports_;  ///< and the chosen one
  std::optional<std::size_t> port_item_;
  std::vector<Seen> devices_;  ///< since the selection began
  Chosen first_;
  Chosen second_;
  bool second_enabled_;
};

}  // namespace qlx
