// The levels and modules of the suite's log, by the numbers that its services use too.
#pragma once

#include <cstdint>

namespace qlx {

/// A message passes when its level is at least LEVEL_ERROR and at most the configured one.
inline constexpr std::uint32_t LEVEL_OFF = 0;
inline constexpr std::uint32_t LEVEL_ERROR = 1;
inline constexpr std::uint32_t LEVEL_WARNING = 2;
inline constexpr std::uint32_t LEVEL_INFO = 3;
inline constexpr std::uint32_t LEVEL_VERBOSE = 4;
inline constexpr std::uint32_t LEVEL_TRACE = 5;

/// Module flags: a message carries one, the configuration a mask of them.
inline constexpr std::uint32_t MZP_DRIVER = 0x001;
inline constexpr std::uint32_t MZP_SERVICE = 0x002;
inline constexpr std::uint32_t MZP_IOBUS = 0x004;
inline constexpr std::uint32_t MZP_MSRUSB = 0x008;
inline constexpr std::uint32_t MZP_CDUSB = 0x010;
inline constexpr std::uint32_t MZP_LDUSB = 0x020;
inline constexpr std::uint32_t MZP_IBUTTONUSB = 0x040;
inline constexpr std::uint32_t MZP_CDPCI = 0x080;
inline constexpr std::uint32_t MZP_PRINTER = 0x100;

/// Beside a module flag: the record continues the one before and is printed without a header.
inline constexpr std::uint32_t kContinuation = 0x80000000;

}  // namespace qlx
