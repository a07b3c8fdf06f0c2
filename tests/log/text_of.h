// A log text from a format and its arguments.
#pragma once

#include <cstdarg>

#include "log/LogText.h"

namespace qlx::test {

LogText TextOf(const char* format, ...) QLX_PRINTF(1, 2);

inline LogText TextOf(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const LogText text(format, arguments);
  va_end(arguments);
  return text;
}

}  // namespace qlx::test
