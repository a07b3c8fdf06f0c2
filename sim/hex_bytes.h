// Bytes as people write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qlx::sim {

/// The bytes of pairs of hexadecimal digits in either case; empty for anything else.
std::optional<std::string> FromHex(std::string_view digits);

}  // namespace qlx::sim
