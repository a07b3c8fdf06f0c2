#include "ports/UsbSelection.h"

#include <algorithm>
#include <utility>

#include "config/Message.h"

namespace qlx {
namespace {

constexpr UsbSelectionLook kLooks[kDeviceKinds] = {
    {Translatable(L"MSR Configuration"), Translatable(L"MSR:"), L"", false},
    {Translatable(L"Line Display Configuration"), Translatable(L"Line Display:"), L"", false},
    {Translatable(L"iButton Configuration"), Translatable(L"iButton:"), L"", false},
    {Translatable(L"Cash Drawer (USB) Configuration"), Translatable(L"Cash Drawer 1:"),
     Translatable(L"Cash Drawer 2:"), true},
    {Translatable(L"Cash Drawer (USB) Configuration"), Translatable(L"Cash Drawer 1:"),
     Translatable(L"Cash Drawer 2:"), true},
    {Translatable(L"Cash Drawer (PCI) Configuration"), Translatable(L"Cash Drawer 1:"),
     Translatable(L"Cash Drawer 2:"), false},
    {Translatable(L"Printer Configuration"), Translatable(L"Printer:"), L"", false},
};

constexpr std::size_t kAuto = 0;

UsbIdentity IdentityOf(const UsbDevice& device) {
  return {FormatId(device.vendor), FormatId(device.product), device.serial};
}

}  // namespace

const UsbSelectionLook& LookOf(DeviceKind kind) {
  return kLooks[static_cast<std::size_t>(kind)];
}

UsbSelection::UsbSelection(DeviceKind kind, std::vector<std::wstring> ports, std::vector<UsbDevice> devices,
                           const SupportedDevices& supported, UsbChoice current)
    : has_choice_(LookOf(kind).devices_enabled),
      ports_(std::move(ports)),
      devices_(std::move(devices)),
      supported_(supported),
      first_(std::move(current.first)),
      second_(std::move(current.second)),
      second_enabled_(has_choice_) {
  const auto port = std::ranges::find(ports_, current.port);
  if (port != ports_.end()) port_item_ = static_cast<std::size_t>(port - ports_.begin());
  first_item_ = ItemOf(first_);
  if (HoldsBothDrawers(first_item_)) {
    second_ = {};
    second_enabled_ = false;
  }
  if (second_enabled_) second_item_ = ItemOf(second_);
}

std::vector<std::wstring> UsbSelection::DeviceItems() const {
  std::vector<std::wstring> items = {Translatable(L"Auto")};
  for (std::size_t position = 1; position <= devices_.size(); ++position) {
    items.emplace_back(1, static_cast<wchar_t>(L'a' - 1 + position));
  }
  return items;
}

void UsbSelection::ChooseFirst(std::size_t item) {
  SetFirst(item);
  if (item != kAuto && second_item_ == item) SetSecond(kAuto);  // one device cannot be both drawers
  if (!has_choice_) return;
  second_enabled_ = !HoldsBothDrawers(item);
  if (!second_enabled_) SetSecond(kAuto);
}

void UsbSelection::ChooseSecond(std::size_t item) {
  SetSecond(item);
  if (item != kAuto && first_item_ == item) SetFirst(kAuto);
  if (HoldsBothDrawers(item)) ChooseFirst(item);
}

UsbChoice UsbSelection::Result() const {
  return {port_item_ ? ports_.at(*port_item_) : std::wstring(), first_, second_};
}

std::size_t UsbSelection::ItemOf(const UsbIdentity& identity) const {
  const auto found = std::ranges::find(devices_, identity, IdentityOf);
  return found == devices_.end() ? kAuto : static_cast<std::size_t>(found - devices_.begin()) + 1;
}

bool UsbSelection::HoldsBothDrawers(std::size_t item) const {
  return has_choice_ && item != kAuto && supported_.HoldsBothDrawers(devices_.at(item - 1).product);
}

void UsbSelection::SetFirst(std::size_t item) {
  first_ = item == kAuto ? UsbIdentity{} : IdentityOf(devices_.at(item - 1));
  first_item_ = item;
}

void UsbSelection::SetSecond(std::size_t item) {
  second_ = item == kAuto ? UsbIdentity{} : IdentityOf(devices_.at(item - 1));
  second_item_ = item;
}

}  // namespace qlx
