// The numbers in the parameters of a printer command.
#pragma once

#include <cstddef>
#include <string_view>

namespace qlx::receipt {

/// The byte at `index`, 0 to 255; 0 behind the end.
constexpr int ByteAt(std::string_view parameters, std::size_t index) {
  return index < parameters.size() ? static_cast<unsigned char>(parameters[index]) : 0;
}

/// Two bytes from `index` on, the low one first.
constexpr int WordAt(std::string_view parameters, std::size_t index) {
  return ByteAt(parameters, index) + 256 * ByteAt(parameters, index + 1);
}

/// Numbers that can be given as a byte or as a digit.
constexpr int DigitAt(std::string_view parameters, std::size_t index) {
  const int value = ByteAt(parameters, index);
  return value >= '0' && value <= '9' ? value - '0' : value;
}

}  // namespace qlx::receipt
