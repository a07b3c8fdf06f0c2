#include "config/schema.h"

#include <algorithm>

namespace qlx {
namespace {

constexpr SettingDefault kPorts[] = {
    {L"MSR_USB", L"", true},     {L"LD_USB", L"", true}, {L"IB_USB", L"", true},
    {L"CD_USB", L"", true},      {L"CD_PCI", L""},  // a PCI drawer has no USB identity
    {L"PRINTER_USB", L"", true},
};

constexpr SettingDefault kLogging[] = {
    {L"File_Name", L"C:\\Program Files\\Harlune\\QLX\\LOG\\qlx.log"},
    {L"File_Size", L"10240"},
    {L"Log_Level", L"0"},
    {L"TCP_Port", L"38674"},
    {L"Module_Service", L"true"},
    {L"Module_MSR", L"true"},
    {L"Module_LD", L"true"},
    {L"Module_IB", L"true"},
    {L"Module_CD", L"true"},
    {L"Module_CD_PCI", L"true"},
    {L"Module_PRINTER_USB", L"true"},
};

// Switches that are off are empty, not "false": the services take either, the older ones only this.
constexpr SettingDefault kMsr[] = {
    {L"CR_Enabled", L""},
    {L"Track1_Enabled", L"true"},
    {L"Track2_Enabled", L"true"},
    {L"Track3_Enabled", L"true"},
    {L"Strip_Sentinels", L""},
    {L"Hide_Error_Tracks", L""},
    {L"Track1_Start_Sentinel", L"%"},
    {L"Track2_Start_Sentinel", L";"},
    {L"Track3_Start_Sentinel", L"+"},
    {L"End_Sentinel", L"?"},
    {L"Head_Wrapper", L""},
    {L"Tail_Wrapper", L""},
    {L"Track1_CR_Enabled", L""},
    {L"Track2_CR_Enabled", L""},
    {L"Track3_CR_Enabled", L""},
};

constexpr SettingDefault kIButton[] = {
    {L"ID_Start", L"1"}, {L"ID_Length", L"16"}, {L"Prefix", L""},
    {L"Suffix", L""},    {L"Delimiter", L"3"},  {L"OnRemove", L"00000000000000000000000000000000"},
};

constexpr SettingDefault kPrinter[] = {
    {L"Code_Page", L"1"},
    {L"Emulation_Mode", L"0"},
};

constexpr SectionDefault kSections[] = {
    {L"Ports_Configuration", kPorts}, {L"Logging_Configuration", kLogging}, {L"MSR_Configuration", kMsr},
    {L"IB_Configuration", kIButton},  {L"Printer_Configuration", kPrinter},
};

}  // namespace

std::span<const SectionDefault> Sections() {
  return kSections;
}

std::wstring_view DefaultText(std::wstring_view section, std::wstring_view key) {
  const auto found = std::ranges::find(kSections, section, &SectionDefault::name);
  if (found == std::end(kSections)) return {};
  const auto setting = std::ranges::find(found->settings, key, &SettingDefault::key);
  return setting == found->settings.end() ? std::wstring_view() : setting->text;
}

}  // namespace qlx
