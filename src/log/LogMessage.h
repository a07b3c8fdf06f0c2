// The log of this process. Any thread may call; the first call reads the settings, a routine at the
// process's exit closes the connection. Text from a device or a file is an argument, never the format.
#pragma once

#include <cstdint>

#include "log/levels.h"
#include "log/printf_format.h"

namespace qlx {

/// Sends one record to the logging service when `level` and `module` pass the configured ones. Text beyond
/// 1023 bytes is cut.
void LogMessage(std::uint32_t module, std::uint32_t level, const char* format, ...) QLX_PRINTF(3, 4);

/// Logs a caption and the `length` bytes at `data` as rows of 16, in hexadecimal and as characters. Other
/// threads' messages may fall between the rows, another dump may not.
void LogHexDump(std::uint32_t module, std::uint32_t level, const void* data, std::uint32_t length,
                const char* format, ...) QLX_PRINTF(5, 6);

}  // namespace qlx
