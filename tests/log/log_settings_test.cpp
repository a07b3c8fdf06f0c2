#include <gtest/gtest.h>

#include "log/LogSettings.h"
#include "log/levels.h"

namespace qlx {
namespace {

LogSettings Filter(const std::wstring& key, const std::wstring& value, LogSettings settings = {}) {
  ReadFilterKeys({{key, value, {}, {}}}, settings);
  return settings;
}

LogSettings File(const std::wstring& key, const std::wstring& value, LogSettings settings = {}) {
  ReadFileKeys({{key, value, {}, {}}}, settings);
  return settings;
}

TEST(LogSettings, WithoutASectionNothingIsLoggedAndEveryModuleIsOn) {
  LogSettings settings;
  ReadFilterKeys({}, settings);
  ReadFileKeys({}, settings);
  EXPECT_EQ(settings.level, LEVEL_OFF);
  EXPECT_EQ(settings.modules, 0xFFFFFFFF);
  EXPECT_EQ(settings.port, 38674U);
  EXPECT_EQ(settings.file_name, "C:\\Program Files\\Harlune\\QLX\\LOG\\qlx.log");
  EXPECT_EQ(settings.file_size, 10485760);
}

TEST(LogSettings, LevelsZeroToFiveAreTaken) {
  for (std::uint32_t level = 0; level <= LEVEL_TRACE; ++level) {
    EXPECT_EQ(Filter(L"Log_Level", std::to_wstring(level)).level, level);
    EXPECT_EQ(File(L"Log_Level", std::to_wstring(level)).level, level);
  }
  EXPECT_EQ(Filter(L"Log_Level", L"05").level, LEVEL_TRACE);
}

TEST(LogSettings, ALevelThatIsNoneLeavesThePreviousValue) {
  LogSettings before;
  before.level = LEVEL_INFO;
  for (const wchar_t* text : {L"6", L"-1", L"3a", L"", L" 4", L"4294967297"}) {
    EXPECT_EQ(Filter(L"Log_Level", text, before).level, LEVEL_INFO) << text;
    EXPECT_EQ(File(L"Log_Level", text, before).level, LEVEL_INFO) << text;
  }
}

TEST(LogSettings, TheLastOfSeveralLevelsCounts) {
  LogSettings settings;
  ReadFilterKeys({{L"Log_Level", L"5", {}, {}}, {L"Log_Level", L"2", {}, {}}, {L"Log_Level", L"6", {}, {}}},
                 settings);
  EXPECT_EQ(settings.level, LEVEL_WARNING);
}

TEST(LogSettings, APortBelow65536IsTaken) {
  EXPECT_EQ(Filter(L"TCP_Port", L"00080").port, 80U);
  EXPECT_EQ(Filter(L"TCP_Port", L"65535").port, 65535U);
  EXPECT_EQ(Filter(L"TCP_Port", L"0").port, 0U);
}

TEST(LogSettings, APortThatIsNoneLeavesTheDefault) {
  for (const wchar_t* text : {L"65536", L"port", L"", L"-1", L"80 ", L"4294967376"})
    EXPECT_EQ(Filter(L"TCP_Port", text).port, 38674U) << text;
}

TEST(LogSettings, EachModuleKeyClearsItsOwnFlag) {
  EXPECT_EQ(Filter(L"Module_Service", L"").modules, ~MZP_SERVICE);
  EXPECT_EQ(Filter(L"Module_MSR", L"").modules, ~MZP_MSRUSB);
  EXPECT_EQ(Filter(L"Module_LD", L"").modules, ~MZP_LDUSB);
  EXPECT_EQ(Filter(L"Module_IB", L"").modules, ~MZP_IBUTTONUSB);
  EXPECT_EQ(Filter(L"Module_CD", L"").modules, ~MZP_CDUSB);
  EXPECT_EQ(Filter(L"Module_CD_PCI", L"").modules, ~MZP_CDPCI);
  EXPECT_EQ(Filter(L"Module_PRINTER_USB", L"").modules, ~MZP_PRINTER);
}

TEST(LogSettings, AnyModuleValueButTrueSwitchesTheModuleOff) {
  for (const wchar_t* text : {L"FALSE", L"1", L"", L"true ", L"yes"})
    EXPECT_EQ(Filter(L"Module_PRINTER_USB", text).modules, ~MZP_PRINTER) << text;
  for (const wchar_t* text : {L"true", L"TRUE", L"True"})
    EXPECT_EQ(Filter(L"Module_PRINTER_USB", text).modules, 0xFFFFFFFF) << text;
}

TEST(LogSettings, AModuleKeyCannotSwitchItsModuleOnAgain) {
  LogSettings settings;
  ReadFilterKeys({{L"Module_MSR", L"", {}, {}}, {L"Module_MSR", L"true", {}, {}}}, settings);
  EXPECT_EQ(settings.modules, ~MZP_MSRUSB);
}

TEST(LogSettings, KeysAreComparedExactly) {
  for (const wchar_t* key : {L"log_level", L"Log_Level ", L"Level", L"LOG_LEVEL"})
    EXPECT_EQ(Filter(key, L"5").level, LEVEL_OFF) << key;
  EXPECT_EQ(Filter(L"Module_Printer_USB", L"").modules, 0xFFFFFFFF);
}

TEST(LogSettings, FileNameIsTakenAlsoWhenEmpty) {
  EXPECT_EQ(File(L"File_Name", L"D:\\\u4E2D.log").file_name, "D:\\\xE4\xB8\xAD.log");
  EXPECT_EQ(File(L"File_Name", L"").file_name, "");
}

TEST(LogSettings, FileSizeIsKilobytes) {
  EXPECT_EQ(File(L"File_Size", L"10240").file_size, 10485760);
  EXPECT_EQ(File(L"File_Size", L"0").file_size, 0);
  for (const wchar_t* text : {L"", L"12k", L"-1"})
    EXPECT_EQ(File(L"File_Size", text).file_size, 10485760) << text;
}

TEST(LogSettings, FileSizeWrapsFrom2097152Kilobytes) {
  EXPECT_EQ(File(L"File_Size", L"2097151").file_size, 2147482624);
  EXPECT_EQ(File(L"File_Size", L"2097152").file_size, -2147483648LL);
  EXPECT_EQ(File(L"File_Size", L"4194304").file_size, 0);
  EXPECT_EQ(File(L"File_Size", L"99999999999").file_size, -1024);
}

TEST(LogSettings, EachReaderKeepsToItsOwnKeys) {
  EXPECT_EQ(Filter(L"File_Size", L"1").file_size, 10485760);
  EXPECT_EQ(File(L"TCP_Port", L"1").port, 38674U);
  EXPECT_EQ(File(L"Module_MSR", L"").modules, 0xFFFFFFFF);
}

}  // namespace
}  // namespace qlx
