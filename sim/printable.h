// Bytes from outside as text for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace qlx::sim {

/// `bytes` with every one that is no printable ASCII character as \xNN, so that a line stays a line.
std::string Printable(std::string_view bytes);

}  // namespace qlx::sim
