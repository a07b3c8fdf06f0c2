// The names of the virtual ports that the terminal has.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/device_interfaces.h"

namespace qlx {

/// "COM" and what follows it in the interface path `path`, upper-cased; empty for a path of another kind.
std::wstring PortName(std::wstring_view path);

/// The names of the present ports in the system's order; an interface of another kind gives an empty name,
/// which stays in its place.
std::vector<std::wstring> DiscoverPorts(const platform::DeviceInterfaces& interfaces);

}  // namespace qlx
