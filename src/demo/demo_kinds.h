// What the demo offers for each kind of device.
#pragma once

#include <string_view>

#include "config/DeviceKind.h"

namespace qlx {

/// An empty label stands for a button that is not shown.
struct DemoKind {
  std::wstring_view title;
  std::wstring_view command;
  std::wstring_view command2;
  bool offers_hex;  ///< the check box "Show Data In Hex" is shown
  bool starts_hex;  ///< how it is at first, shown or not
};

inline constexpr DemoKind kDemoKinds[kDeviceKinds] = {
    {L"MSR Demo", L"", L"", true, false},
    {L"Line Display Demo", L"Send Text", L"", false, false},
    {L"iButton Demo", L"", L"", true, true},
    {L"Cash Drawer Demo", L"Open CDs", L"Get Status", false, true},
    {L"Cash Drawer Demo", L"Open CDs", L"Get Status", false, true},
    {L"Cash Drawer Demo", L"Open CDs", L"Get Status", false, true},
    {L"Printer Demo", L"Print Receipt", L"", false, true},
};

constexpr bool IsCashDrawer(DeviceKind kind) {
  return kind == kCashDrawer1 || kind == kCashDrawer2 || kind == kCashDrawerPci;
}

}  // namespace qlx
