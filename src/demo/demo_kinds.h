// What the demo offers for each kind of device.
#pragma once

#include <string_view>

#include "config/DeviceKind.h"
#include "config/Message.h"

namespace qlx {

/// With mnemonics. An empty label stands for a button that is not shown.
struct DemoKind {
  std::wstring_view title;
  std::wstring_view command;
  std::wstring_view command2;
  bool offers_hex;  ///< the check box "Show Data In Hex" is shown
  bool starts_hex;  ///< how it is at first, shown or not
};

inline constexpr DemoKind kDemoKinds[kDeviceKinds] = {
    {Translatable(L"MSR Demo"), L"", L"", true, false},
    {Translatable(L"Line Display Demo"), Translatable(L"S&end Text"), L"", false, false},
    {Translatable(L"iButton Demo"), L"", L"", true, true},
    {Translatable(L"Cash Drawer Demo"), Translatable(L"&Open CDs"), Translatable(L"&Get Status"), false,
     true},
    {Translatable(L"Cash Drawer Demo"), Translatable(L"&Open CDs"), Translatable(L"&Get Status"), false,
     true},
    {Translatable(L"Cash Drawer Demo"), Translatable(L"&Open CDs"), Translatable(L"&Get Status"), false,
     true},
    {Translatable(L"Printer Demo"), Translatable(L"&Print Receipt"), L"", false, true},
};

constexpr bool IsCashDrawer(DeviceKind kind) {
  return kind == kCashDrawer1 || kind == kCashDrawer2 || kind == kCashDrawerPci;
}

}  // namespace qlx
