// The Logging page without its window.
#pragma once

#include <string_view>

#include "pages/PageSettings.h"

namespace qlx {

/// Section Logging_Configuration: the log file, the logging service's port, the level and the modules.
class LOGSettings : public PageSettings {
 public:
  static constexpr int kFileName = 1025;
  static constexpr int kFileSize = 1023;
  static constexpr int kTcpPort = 1022;
  static constexpr int kLogLevel = 1019;

  static constexpr SettingRow kRows[] = {
      {.control = kFileName, .key = L"File_Name", .form = SettingForm::kText, .limit = 260},
      {.control = kFileSize, .key = L"File_Size", .form = SettingForm::kDigits, .limit = 6},
      {.control = kLogLevel, .key = L"Log_Level", .form = SettingForm::kChoice, .limit = 6},
      {.control = kTcpPort, .key = L"TCP_Port", .form = SettingForm::kDigits, .limit = 5},
      {.control = 1020, .key = L"Module_Service", .form = SettingForm::kCheck},
      {.control = 1021, .key = L"Module_MSR", .form = SettingForm::kCheck},
      {.control = 1032, .key = L"Module_LD", .form = SettingForm::kCheck},
      {.control = 1035, .key = L"Module_IB", .form = SettingForm::kCheck},
      {.control = 1036, .key = L"Module_CD", .form = SettingForm::kCheck},
      {.control = 1037, .key = L"Module_CD_PCI", .form = SettingForm::kCheck},
      {.control = 1039, .key = L"Module_PRINTER_USB", .form = SettingForm::kCheck},
  };

  /// The control of the setting `key`; one that the table does not have does not compile.
  static consteval int Control(std::wstring_view key) {
    for (const SettingRow& row : kRows) {
      if (row.key == key) return row.control;
    }
    throw "no such setting";
  }

  LOGSettings();
};

}  // namespace qlx
