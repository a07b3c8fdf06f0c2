#include "ports/supported_devices.h"

#include <fstream>

#include <windows.h>
#include <gtest/gtest.h>

#include "tests/support/TemporaryDirectory.h"

namespace qlx {
namespace {

TEST(InstalledSupportedDevices, AreLookedForInTheSuitesDirectory) {
  const test::TemporaryDirectory directory;
  std::ofstream(directory.path() / "supported_devices") << "<supported_devices V1=\"0x1234\"/>";
  const std::wstring path = directory.path().wstring();
  const auto size = static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t));
  constexpr wchar_t kKey[] = L"SOFTWARE\\HARLUNE\\Quillon";
  ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, kKey, L"Directory", REG_SZ, path.c_str(), size),
            ERROR_SUCCESS);
  const SupportedDevices installed = InstalledSupportedDevices();
  RegDeleteKeyW(HKEY_LOCAL_MACHINE, kKey);
  EXPECT_EQ(installed.vendors[0], 0x1234);
}

}  // namespace
}  // namespace qlx
