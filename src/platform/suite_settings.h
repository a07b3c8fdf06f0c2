// Where the driver suite keeps its own settings.
#pragma once

#include <string>

namespace qlx::platform {

/// The directory of the suite's settings, with the separator at its end: a file's name can be put behind it.
/// It need not exist. Any thread.
std::wstring SettingsDirectory();

}  // namespace qlx::platform
