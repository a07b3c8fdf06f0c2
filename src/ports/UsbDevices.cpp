#include "ports/UsbDevices.h"

#include <span>

namespace qlx {
namespace {

/// A device of vendor V and product P, by number, with the usage that tells what it is.
struct Filter {
  int vendor;
  int product;
  std::uint16_t usage_page;
  std::uint16_t usage;
};

constexpr std::uint16_t kUsagePage = 0xFF45;  // of the makers' own, USB HID Usage Tables 1.12, section 3

constexpr Filter kCashDrawers[] = {
    {1, 1, kUsagePage, 0x5400}, {1, 2, kUsagePage, 0x5400}, {1, 3, kUsagePage, 0x5400},
    {2, 4, kUsagePage, 0x5400}, {2, 5, kUsagePage, 0x5400}, {2, 6, kUsagePage, 0x5400},
};
constexpr Filter kIButtons[] = {{2, 7, kUsagePage, 0x1440}};
constexpr Filter kLineDisplays[] = {
    {2, 8, kUsagePage, 0x2600},  {2, 9, kUsagePage, 0x2400},  {2, 10, kUsagePage, 0x2400},
    {2, 11, kUsagePage, 0x2400}, {2, 11, kUsagePage, 0x2500}, {2, 12, kUsagePage, 0x2A00},
    {2, 13, kUsagePage, 0x2A00},
};
constexpr Filter kCardReaders[] = {
    {2, 8, kUsagePage, 0x1600},
    {2, 14, kUsagePage, 0x1600},
    {2, 15, kUsagePage, 0x1600},
    {2, 16, kUsagePage, 0x1600},
};

/// In the order in which they are asked; table n fills list n.
constexpr std::span<const Filter> kTables[] = {kCashDrawers, kIButtons, kLineDisplays, kCardReaders};

constexpr std::size_t kNoDevices = 4;
constexpr std::size_t kListOfKind[kDeviceKinds] = {3, 2, 1, 0, 0, kNoDevices, kNoDevices};

bool Matches(const platform::HidDevice& device, const Filter& filter, const SupportedDevices& supported) {
  return device.vendor == supported.vendors[static_cast<std::size_t>(filter.vendor - 1)] &&
         device.product == supported.products[static_cast<std::size_t>(filter.product - 1)] &&
         device.usage_page == filter.usage_page && device.usage == filter.usage;
}

}  // namespace

std::wstring FormatId(std::uint16_t id) {
  constexpr wchar_t kDigits[] = L"0123456789abcdef";
  return {L'0', L'x', kDigits[id >> 12], kDigits[id >> 8 & 0xF], kDigits[id >> 4 & 0xF], kDigits[id & 0xF]};
}

bool UsbDevices::Refresh() {
  for (auto& list : lists_) list.clear();
  return library_ && library_->Walk([this](const platform::HidDevice& device) { Sort(device); });
}

const std::vector<UsbDevice>& UsbDevices::ForKind(DeviceKind kind) const {
  return lists_[kListOfKind[static_cast<std::size_t>(kind)]];
}

void UsbDevices::Sort(const platform::HidDevice& device) {
  for (std::size_t table = 0; table < std::size(kTables); ++table) {
    for (const Filter& filter : kTables[table]) {
      if (!Matches(device, filter, supported_)) continue;
      lists_[table].push_back({device.vendor, device.product, device.serial, device.name});
      return;
    }
  }
}

}  // namespace qlx
