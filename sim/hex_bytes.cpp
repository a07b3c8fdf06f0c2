#include "sim/hex_bytes.h"

#include <charconv>

namespace qlx::sim {

std::optional<std::string> FromHex(std::string_view digits) {
  if (digits.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  for (; !digits.empty(); digits.remove_prefix(2)) {
    unsigned char value = 0;
    const char* end = digits.data() + 2;
    const auto [stopped, error] = std::from_chars(digits.data(), end, value, 16);
    if (error != std::errc() || stopped != end) return std::nullopt;
    bytes += static_cast<char>(value);
  }
  return bytes;
}

}  // namespace qlx::sim
