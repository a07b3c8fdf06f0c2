// Where a UNIX socket is.
#pragma once

#include <filesystem>

#include <sys/un.h>

namespace qlx::sim {

/// Throws std::runtime_error when `path` has no room in an address.
sockaddr_un SocketAddress(const std::filesystem::path& path);

}  // namespace qlx::sim
