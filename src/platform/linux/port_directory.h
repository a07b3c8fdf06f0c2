// Where the links to the virtual ports' ttys are.
#pragma once

#include <filesystem>

namespace qlx::platform {

/// QUILLON_PORT_DIR, else /dev/quillon.
std::filesystem::path VirtualPortDirectory();

}  // namespace qlx::platform
