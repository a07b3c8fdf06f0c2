// Where the driver suite keeps its own settings and its data.
#pragma once

#include <optional>
#include <string>

namespace qlx::platform {

/// The directory of the suite's settings, with the separator at its end: a file's name can be put behind it.
/// It need not exist. Any thread.
std::wstring SettingsDirectory();

/// The directory of the suite's data, which its services read too, with the separator at its end: the one
/// that the suite's settings name, or the system's own when they name none or cannot be read. It need not
/// exist. Empty when the settings name one that cannot be used, such as a relative one. Any thread.
std::optional<std::wstring> DataDirectory();

}  // namespace qlx::platform
