#include "ports/UsbSelection.h"

#include <algorithm>
#include <utility>

#include "config/Message.h"

namespace qlx {
namespace {

constexpr UsbSelectionLook kLooks[kDeviceKinds] = {
    {Translatable(L"MSR Configuration"), Translatable(L"&MSR:"), L"", false},
    {Translatable(L"Line Display Configuration"), Translatable(L"&Line Display:"), L"", false},
    {Translatable(L"iButton Configuration"), Translatable(L"i&Button:"), L"", false},
    {Translatable(L"Cash Drawer (USB) Configuration"), Translatable(L"Cash Drawer &1:"),
     Translatable(L"Cash Drawer &2:"), true},
    {Translatable(L"Cash Drawer (USB) Configuration"), Translatable(L"Cash Drawer &1:"),
     Translatable(L"Cash Drawer &2:"), true},
    {Translatable(L"Cash Drawer (PCI) Configuration"), Translatable(L"Cash Drawer &1:"),
     Translatable(L"Cash Drawer &2:"), false},
    {Translatable(L"Printer Configuration"), Translatable(L"P&rinter:"), L"", false},
};

constexpr std::size_t kAuto = 0;

UsbIdentity IdentityOf(const UsbDevice& device) {
  return {FormatId(device.vendor), FormatId(device.product), device.serial};
}

}  // namespace

const UsbSelectionLook& LookOf(DeviceKind kind) {
  return kLooks[static_cast<std::size_t>(kind)];
}

UsbSelection::UsbSelection(DeviceKind kind, std::vector<std::wstring> ports,
                           const std::vector<UsbDevice>& devices, const SupportedDevices& supported,
                           UsbChoice current)
    : has_choice_(LookOf(kind).devices_enabled),
      supported_(supported),
      present_ports_(std::move(ports)),
      first_{std::move(current.first)},
      second_{std::move(current.second)},
      second_enabled_(has_choice_) {
  OfferPorts(std::ranges::find(present_ports_, current.port) == present_ports_.end() ? nullptr
                                                                                     : &current.port);
  TakeDevices(devices);
}

void UsbSelection::TakePresent(std::vector<std::wstring> ports, const std::vector<UsbDevice>& devices) {
  present_ports_ = std::move(ports);
  const std::wstring chosen = Result().port;
  OfferPorts(port_item_ ? &chosen : nullptr);
  TakeDevices(devices);
}

bool UsbSelection::port_present() const {
  return !port_item_ || std::ranges::find(present_ports_, ports_[*port_item_]) != present_ports_.end();
}

void UsbSelection::ChoosePort(std::size_t item) {
  const std::wstring chosen = ports_.at(item);
  OfferPorts(&chosen);
}

std::vector<std::wstring> UsbSelection::DeviceItems() const {
  std::vector<std::wstring> items;
  for (const std::size_t number : OfferedDevices()) {
    items.push_back(number == kAuto ? Translatable(L"Auto")
                                    : std::wstring(1, static_cast<wchar_t>(L'a' - 1 + number)));
  }
  return items;
}

UsbChoice UsbSelection::Result() const {
  return {port_item_ ? ports_.at(*port_item_) : std::wstring(), first_.identity, second_.identity};
}

/// A chosen port that has gone keeps its place.
void UsbSelection::OfferPorts(const std::wstring* chosen) {
  ports_ = present_ports_;
  if (chosen == nullptr) return port_item_.reset();
  auto place = std::ranges::find(ports_, *chosen);
  if (place == ports_.end()) {
    const std::size_t before = std::min(port_item_.value_or(0), ports_.size());
    place = ports_.insert(ports_.begin() + static_cast<std::ptrdiff_t>(before), *chosen);
  }
  port_item_ = static_cast<std::size_t>(place - ports_.begin());
}

void UsbSelection::TakeDevices(const std::vector<UsbDevice>& devices) {
  for (Seen& seen : devices_) seen.present = false;
  for (const UsbDevice& device : devices) {
    // Equal devices cannot be told apart, but they can be counted.
    const auto known = std::ranges::find_if(
        devices_, [&](const Seen& seen) { return !seen.present && seen.device == device; });
    if (known == devices_.end()) {
      devices_.push_back({device, true});
    } else {
      known->present = true;
    }
  }
  ChooseStored();
}

void UsbSelection::ChooseStored() {
  if (first_.device == kAuto) first_.device = NumberOf(first_.identity);
  if (HoldsBothDrawers(first_.device)) {
    second_ = {};
    second_enabled_ = false;
  }
  if (second_enabled_ && second_.device == kAuto) second_.device = NumberOf(second_.identity);
}

std::vector<std::size_t> UsbSelection::OfferedDevices() const {
  std::vector<std::size_t> numbers = {kAuto};
  for (std::size_t number = 1; number <= devices_.size(); ++number) {
    const bool chosen = number == first_.device || number == second_.device;
    if (chosen || devices_[number - 1].present) numbers.push_back(number);
  }
  return numbers;
}

std::size_t UsbSelection::ItemOf(const Chosen& chosen) const {
  const auto numbers = OfferedDevices();
  return static_cast<std::size_t>(std::ranges::find(numbers, chosen.device) - numbers.begin());
}

std::size_t UsbSelection::NumberOf(const UsbIdentity& identity) const {
  const auto found =
      std::ranges::find(devices_, identity, [](const Seen& seen) { return IdentityOf(seen.device); });
  return found == devices_.end() ? kAuto : static_cast<std::size_t>(found - devices_.begin()) + 1;
}

bool UsbSelection::IsPresent(const UsbIdentity& identity) const {
  return identity == UsbIdentity{} || std::ranges::any_of(devices_, [&](const Seen& seen) {
           return seen.present && IdentityOf(seen.device) == identity;
         });
}

bool UsbSelection::HoldsBothDrawers(std::size_t number) const {
  return has_choice_ && number != kAuto && supported_.HoldsBothDrawers(devices_[number - 1].device.product);
}

void UsbSelection::TakeFirst(std::size_t number) {
  first_ = Choice(number);
  if (number != kAuto && second_.device == number) second_ = {};  // one device cannot be both drawers
  if (!has_choice_) return;
  second_enabled_ = !HoldsBothDrawers(number);
  if (!second_enabled_) second_ = {};
}

void UsbSelection::TakeSecond(std::size_t number) {
  second_ = Choice(number);
  if (number != kAuto && first_.device == number) first_ = {};
  if (HoldsBothDrawers(number)) TakeFirst(number);
}

UsbSelection::Chosen UsbSelection::Choice(std::size_t number) const {
  if (number == kAuto) return {};
  return {IdentityOf(devices_[number - 1].device), number};
}

}  // namespace qlx
