// The text of one message, formatted and cut.
#pragma once

#include <array>
#include <cstdarg>
#include <cstddef>
#include <string_view>

#include "log/printf_format.h"

namespace qlx {

/// At most 1023 bytes. Text that cannot be formatted is what the C runtime left of it.
class LogText {
 public:
  LogText(const char* format, std::va_list arguments) QLX_PRINTF(2, 0);

  /// Cuts what does not fit.
  void Append(std::string_view more);

  std::string_view view() const { return {text_.data(), length_}; }

 private:
  static constexpr std::size_t kLimit = 1023;

  std::array<char, kLimit + 1> text_;
  std::size_t length_;
};

}  // namespace qlx
