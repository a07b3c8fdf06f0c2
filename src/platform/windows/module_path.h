// The directory of the running program.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qlx::platform {

/// `file_name` in the directory of the program `module` (a full path). Empty when `module` has no directory
/// and when the path does not fit the 260 units, with the zero at its end, that the suite's programs hold a
/// path in.
std::optional<std::wstring> PathBesideModule(std::wstring_view module, std::wstring_view file_name);

}  // namespace qlx::platform
