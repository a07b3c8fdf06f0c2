// Whole reads and writes on open files.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <windows.h>

namespace qlx::platform {

/// All that can be read from `file` on, but at most one byte more than `limit`; empty with the system's error
/// set.
std::optional<std::string> ReadAll(HANDLE file, std::size_t limit);

/// Up to `size` bytes into `block`; 0 at the end. Empty with the system's error set.
std::optional<std::size_t> ReadSome(HANDLE file, char* block, std::size_t size);

/// False with the system's error set when the system takes no more.
bool WriteAll(HANDLE file, std::string_view bytes);

}  // namespace qlx::platform
