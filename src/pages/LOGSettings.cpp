#include "pages/LOGSettings.h"

#include "config/Message.h"

namespace qlx {
namespace {

using enum SettingForm;

constexpr PageFacts kFacts = {
    .section = L"Logging_Configuration",
    .no_document = Translatable(L"Error loading Log settings!\nExiting program."),
    .edit_not_converted = Translatable(L"Error converting LOG Edit settings!\nExiting program."),
    .choice_not_converted = Translatable(L"Error converting LOG Combo Box settings!\nExiting program."),
    .saved = Translatable(L"Log settings saved."),
};

constexpr SettingRow kRows[] = {
    {LOGSettings::kFileName, L"File_Name", kText, 260},
    {LOGSettings::kFileSize, L"File_Size", kDigits, 6},
    {LOGSettings::kLogLevel, L"Log_Level", kChoice, 6},
    {LOGSettings::kTcpPort, L"TCP_Port", kDigits, 5},
    {LOGSettings::kService, L"Module_Service", kCheck},
    {LOGSettings::kMsr, L"Module_MSR", kCheck},
    {LOGSettings::kLineDisplay, L"Module_LD", kCheck},
    {LOGSettings::kIButton, L"Module_IB", kCheck},
    {LOGSettings::kCashDrawerUsb, L"Module_CD", kCheck},
    {LOGSettings::kCashDrawerPci, L"Module_CD_PCI", kCheck},
    {LOGSettings::kPrinter, L"Module_PRINTER_USB", kCheck},
};

}  // namespace

LOGSettings::LOGSettings() : PageSettings(kFacts, kRows) {}

}  // namespace qlx
