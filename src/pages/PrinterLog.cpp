#include "pages/PrinterLog.h"

#include "log/LogMessage.h"

namespace qlx {

PrinterLog ThisPrinterLog() {
  return {
      [](std::uint32_t level, const std::string& line) {
        LogMessage(MZP_PRINTER, level, "%s", line.c_str());
      },
      [](std::uint32_t level, const std::string& caption, std::span<const std::uint8_t> bytes) {
        LogHexDump(MZP_PRINTER, level, bytes.data(), static_cast<std::uint32_t>(bytes.size()), "%s",
                   caption.c_str());
      },
  };
}

}  // namespace qlx
