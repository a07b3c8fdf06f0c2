// Where the printer page's lines go.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace qlx {

/// Both take a level and may be called from any thread.
struct PrinterLog {
  std::function<void(std::uint32_t level, const std::string& line)> line;
  std::function<void(std::uint32_t level, const std::string& caption, std::span<const std::uint8_t> bytes)>
      dump;
};

/// The log of this process, as module MZP_PRINTER.
PrinterLog ThisPrinterLog();

}  // namespace qlx
