// The characters behind the bytes of a receipt.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qlx::receipt {

/// One character a byte, in UTF-8, as in the table `table` of ESC t; a table that is not known counts as the
/// first, code page 437. What has no character is U+FFFD. Works on any thread.
std::string DecodeText(std::string_view bytes, std::uint8_t table);

}  // namespace qlx::receipt
