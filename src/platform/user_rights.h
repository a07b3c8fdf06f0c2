// May this process change the suite's settings?
#pragma once

namespace qlx::platform {

/// True when the process runs with the rights that changing the configuration takes: on Linux the effective
/// user is root, on Windows the process is elevated or the system knows no elevation.
bool MayChangeSettings();

}  // namespace qlx::platform
