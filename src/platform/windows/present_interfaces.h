// The device interfaces of one class that are present now.
#pragma once

#include <functional>
#include <string>

#include <windows.h>

namespace qlx::platform {

/// Calls `found` with each interface's path, in the system's order; one whose path cannot be learned is left
/// out. True when the walk came to its end, false when the class could not be opened or the walk broke off.
bool WalkPresentInterfaces(const GUID& interface_class,
                           const std::function<void(const std::wstring& path)>& found);

}  // namespace qlx::platform
