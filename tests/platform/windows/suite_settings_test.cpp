#include "platform/suite_settings.h"

#include <cstddef>
#include <string_view>

#include <windows.h>
#include <gtest/gtest.h>

namespace qlx::platform {
namespace {

constexpr wchar_t kKey[] = L"SOFTWARE\\HARLUNE\\Quillon";

class RegistryTest : public testing::Test {
 protected:
  RegistryTest() {
    EXPECT_EQ(
        RegCreateKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_, nullptr), 0);
    RegDeleteValueW(key_, L"Directory");
  }
  ~RegistryTest() override {
    RegCloseKey(key_);
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kKey);
  }

  /// Stores exactly the units of `value`: with or without a zero at the end.
  void Set(std::wstring_view value, DWORD type = REG_SZ) const {
    const auto size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    EXPECT_EQ(RegSetValueExW(key_, L"Directory", 0, type, reinterpret_cast<const BYTE*>(value.data()), size),
              0);
  }
  std::optional<std::wstring> With(std::wstring_view value, DWORD type = REG_SZ) const {
    Set(value, type);
    return DataDirectory();
  }

  HKEY key_ = nullptr;
};

using DataDirectoryTest = RegistryTest;
using SettingsDirectoryTest = RegistryTest;

constexpr wchar_t kDefault[] = L"C:\\Program Files\\Harlune\\MZP\\DAT\\";

TEST_F(DataDirectoryTest, IsTheSystemsWithoutAKeyOrAValue) {
  EXPECT_EQ(DataDirectory(), kDefault);
  RegDeleteKeyW(HKEY_LOCAL_MACHINE, kKey);
  EXPECT_EQ(DataDirectory(), kDefault);
}

TEST_F(DataDirectoryTest, IsTheFolderDatOfTheDirectoryThatIsSet) {
  EXPECT_EQ(With(L"D:\\Till\\"), L"D:\\Till\\DAT\\");
  EXPECT_EQ(With(L"\\\\server\\till\\"), L"\\\\server\\till\\DAT\\");
}

TEST_F(DataDirectoryTest, TheFolderIsPutRightBehindASettingWithoutASeparator) {
  EXPECT_EQ(With(L"D:\\Till"), L"D:\\TillDAT\\");
}

TEST_F(DataDirectoryTest, TheSettingMayNameVariables) {
  EXPECT_EQ(With(L"%SystemDrive%\\Till\\", REG_EXPAND_SZ), L"C:\\Till\\DAT\\");
  EXPECT_EQ(With(L"D:\\%SystemDrive%\\", REG_SZ), L"D:\\%SystemDrive%\\DAT\\");
}

TEST_F(DataDirectoryTest, TheSettingEndsAtItsFirstZeroOrWithItsLastUnit) {
  EXPECT_EQ(With({L"D:\\Till\\\0rest\0", 14}), L"D:\\Till\\DAT\\");
  EXPECT_EQ(With({L"D:\\Till\\", 8}), L"D:\\Till\\DAT\\");
}

TEST_F(DataDirectoryTest, IsTheSystemsWhenTheSettingIsEmptyOrNoText) {
  EXPECT_EQ(With(L""), kDefault);
  EXPECT_EQ(With({L"\0", 1}), kDefault);
  EXPECT_EQ(With(L"D:\\Till\\", REG_BINARY), kDefault);
  EXPECT_EQ(With(L"D:\\Till\\", REG_MULTI_SZ), kDefault);
  EXPECT_EQ(With({L"ab", 2}, REG_DWORD), kDefault);
}

TEST_F(DataDirectoryTest, IsNoneWhenTheOneSetCannotBeUsed) {
  EXPECT_EQ(With(L"Till\\"), std::nullopt);
  EXPECT_EQ(With(L"\\Till\\"), std::nullopt);
  EXPECT_EQ(With(L"D:\\" + std::wstring(253, L'x')), std::nullopt);
  EXPECT_TRUE(With(L"D:\\" + std::wstring(252, L'x')) != std::nullopt);
}

TEST_F(SettingsDirectoryTest, IsTheOneThatIsSetOrTheSystems) {
  EXPECT_EQ(SettingsDirectory(), L"C:\\Program Files\\Harlune\\MZP\\");
  Set(L"D:\\Till\\");
  EXPECT_EQ(SettingsDirectory(), L"D:\\Till\\");
  Set(L"D:\\Till");
  EXPECT_EQ(SettingsDirectory(), L"D:\\Till\\");
}

}  // namespace
}  // namespace qlx::platform
