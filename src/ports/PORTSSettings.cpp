#include "ports/PORTSSettings.h"

#include <algorithm>

namespace qlx {
namespace {

constexpr wchar_t kSection[] = L"Ports_Configuration";

enum class Identities { kNone, kOne, kTwo };

struct DeviceElement {
  const wchar_t* name;
  DeviceKind kind;
  Identities identities;
};

// In the order in which they are read and written.
constexpr DeviceElement kElements[] = {
    {L"MSR_USB", kMsr, Identities::kOne},           {L"LD_USB", kLineDisplay, Identities::kOne},
    {L"IB_USB", kIButton, Identities::kOne},        {L"CD_USB", kCashDrawer1, Identities::kTwo},
    {L"CD_PCI", kCashDrawerPci, Identities::kNone}, {L"PRINTER_USB", kPrinter, Identities::kOne},
};

bool Holds(const std::vector<std::wstring>& ports, const std::wstring& port) {
  return std::ranges::find(ports, port) != ports.end();
}

std::wstring Attribute(const ConfigNode& element, const wchar_t* name) {
  const auto found = element.attributes.find(name);
  return found == element.attributes.end() ? std::wstring() : found->second;
}

}  // namespace

const std::wstring& PORTSSettings::PortOf(DeviceKind kind) const {
  return row(kind == kCashDrawer2 ? kCashDrawer1 : kind).port;
}

void PORTSSettings::Load(const std::vector<ConfigNode>& elements) {
  for (const ConfigNode& element : elements) {
    const auto found = std::ranges::find(kElements, element.name, &DeviceElement::name);
    if (found == std::end(kElements)) continue;
    const bool present = Holds(ports_, element.text);
    if (present) Row(found->kind).port = element.text;
    left_in_file_[static_cast<std::size_t>(found->kind)] = present ? std::wstring() : element.text;
    if (found->identities != Identities::kTwo) continue;
    Row(kCashDrawer1).usb = {Attribute(element, L"VID"), Attribute(element, L"PID"),
                             Attribute(element, L"Serial_Number")};
    Row(kCashDrawer2).usb = {Attribute(element, L"VID_2"), Attribute(element, L"PID_2"),
                             Attribute(element, L"Serial_Number_2")};
  }
  stored_ = rows_;
}

void PORTSSettings::Save(ConfigDocument& document) {
  for (const DeviceElement& element : kElements) document.RemoveNodes(kSection, element.name);
  for (const DeviceElement& element : kElements) {
    const PortRow& device = row(element.kind);
    AttributeMap attributes;
    if (element.identities != Identities::kNone) {
      attributes = {
          {L"VID", device.usb.vendor}, {L"PID", device.usb.product}, {L"Serial_Number", device.usb.serial}};
    }
    if (element.identities == Identities::kTwo) {
      const UsbIdentity& second = row(kCashDrawer2).usb;
      attributes.merge(AttributeMap{
          {L"VID_2", second.vendor}, {L"PID_2", second.product}, {L"Serial_Number_2", second.serial}});
    }
    document.SetValue(kSection, element.name, device.port, attributes);
  }
  left_in_file_ = {};
  if (document.Save()) stored_ = rows_;
}

void PORTSSettings::Configure(DeviceKind kind, const PortRow& choice, const UsbIdentity& second) {
  if (kind == kCashDrawer2) kind = kCashDrawer1;
  for (PortRow& other : rows_) {
    if (&other != &Row(kind) && other.port == choice.port) other.port.clear();
  }
  Row(kind) = choice;
  if (kind == kCashDrawer1) Row(kCashDrawer2).usb = second;
  if (!choice.port.empty() && !Holds(ports_, choice.port)) ports_.push_back(choice.port);
}

std::vector<AbsentPort> PORTSSettings::AbsentPorts(const std::vector<std::wstring>& present) const {
  std::vector<AbsentPort> absent;
  for (const DeviceElement& element : kElements) {
    const std::wstring& port = row(element.kind).port;
    if (!port.empty()) {
      if (!Holds(present, port)) absent.push_back({element.kind, port, true});
      continue;
    }
    const std::wstring& left = left_in_file_[static_cast<std::size_t>(element.kind)];
    if (!left.empty()) absent.push_back({element.kind, left, false});
  }
  return absent;
}

}  // namespace qlx
