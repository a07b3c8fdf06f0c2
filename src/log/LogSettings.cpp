#include "log/LogSettings.h"

#include <string_view>

#include "config/values.h"
#include "log/levels.h"
#include "platform/text.h"

namespace qlx {
namespace {

constexpr std::int32_t kPortEnd = 65536;
constexpr std::uint32_t kBytesPerKilobyte = 1024;

struct ModuleKey {
  std::wstring_view name;
  std::uint32_t flag;
};

constexpr ModuleKey kModuleKeys[] = {
    {L"Module_Service", MZP_SERVICE},     {L"Module_MSR", MZP_MSRUSB}, {L"Module_LD", MZP_LDUSB},
    {L"Module_IB", MZP_IBUTTONUSB},       {L"Module_CD", MZP_CDUSB},   {L"Module_CD_PCI", MZP_CDPCI},
    {L"Module_PRINTER_USB", MZP_PRINTER},
};

void ReadPort(const std::wstring& text, LogSettings& settings) {
  const auto port = ParseNumber(text);
  if (port && *port < kPortEnd) settings.port = static_cast<std::uint32_t>(*port);
}

void ReadLevel(const std::wstring& text, LogSettings& settings) {
  const auto level = ParseNumber(text);
  if (level && *level <= static_cast<std::int32_t>(LEVEL_TRACE))
    settings.level = static_cast<std::uint32_t>(*level);
}

/// From 2097152 KB on the product wraps in 32 bits: wanted, the logging service counts the same way.
void ReadFileSize(const std::wstring& text, LogSettings& settings) {
  const auto kilobytes = ParseNumber(text);
  if (!kilobytes) return;
  settings.file_size = static_cast<std::int32_t>(static_cast<std::uint32_t>(*kilobytes) * kBytesPerKilobyte);
}

}  // namespace

void ReadFilterKeys(const std::vector<ConfigNode>& keys, LogSettings& settings) {
  for (const ConfigNode& key : keys) {
    if (key.name == L"TCP_Port") ReadPort(key.text, settings);
    if (key.name == L"Log_Level") ReadLevel(key.text, settings);
    for (const ModuleKey& module : kModuleKeys)
      if (key.name == module.name && !IsTrue(key.text)) settings.modules &= ~module.flag;
  }
}

void ReadFileKeys(const std::vector<ConfigNode>& keys, LogSettings& settings) {
  for (const ConfigNode& key : keys) {
    if (key.name == L"File_Name") settings.file_name = platform::ToUtf8(key.text);
    if (key.name == L"File_Size") ReadFileSize(key.text, settings);
    if (key.name == L"Log_Level") ReadLevel(key.text, settings);
  }
}

}  // namespace qlx
