// Where links lead.
#pragma once

#include <optional>
#include <string>

#include <windows.h>

namespace qlx::platform {

/// The path of what `file` is open on, in the form that people write where it fits one; empty with the
/// system's error set when it has none.
std::optional<std::wstring> FinalPath(HANDLE file);

/// The path of the file or directory that `path` leads to, links followed; empty with the system's error set
/// when nothing is there or it cannot be opened.
std::optional<std::wstring> FinalPath(const std::wstring& path);

}  // namespace qlx::platform
