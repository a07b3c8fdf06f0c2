// The bytes that the demo sends to each kind of device.
#pragma once

#include <span>
#include <string_view>

#include "config/DeviceKind.h"

namespace qlx {

/// Chunks to be written in this order, one write each.
struct DemoCommand {
  std::wstring_view announcement;  ///< the line shown before the first write; empty for none
  std::span<const std::string_view> chunks;
};

/// What the button "Command" sends; nothing for the kinds that only talk.
DemoCommand FirstDemoCommand(DeviceKind kind);

/// What the button "Command2" sends; nothing for the kinds that only talk and for the line display.
DemoCommand SecondDemoCommand(DeviceKind kind);

}  // namespace qlx
