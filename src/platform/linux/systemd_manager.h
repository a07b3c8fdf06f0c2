// The service manager of a Linux machine: systemd, reached over the system bus.
#pragma once

#include <chrono>
#include <memory>

#include "platform/service_control.h"

namespace qlx::platform {

/// How long systemd may take to answer one call.
inline constexpr std::chrono::milliseconds kServiceCallLimit{5000};

/// Connects to the bus that DBUS_SYSTEM_BUS_ADDRESS names, else to the system's own. A service "NAME" is the
/// unit "NAME.service". Error numbers are errno values: that of the bus error, ETIMEDOUT for a call without
/// an answer within `call_limit`, EIO for a unit that did not stay up after its start.
std::unique_ptr<ServiceManager> OpenSystemdManager(std::chrono::milliseconds call_limit);

}  // namespace qlx::platform
