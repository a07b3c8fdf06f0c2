#include "platform/suite_settings.h"

#include <memory>

#include <windows.h>

#include "platform/program.h"

namespace qlx::platform {
namespace {

constexpr wchar_t kKey[] = L"SOFTWARE\\HARLUNE\\Quillon";
constexpr wchar_t kDirectoryValue[] = L"Directory";
constexpr wchar_t kDefaultDirectory[] = L"C:\\Program Files\\Harlune\\MZP\\";
constexpr wchar_t kDataFolder[] = L"DAT\\";

struct CloseKey {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

Key SuiteKey() {
  HKEY key = nullptr;
  const LSTATUS result = RegOpenKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, KEY_QUERY_VALUE, &key);
  return Key(result == ERROR_SUCCESS ? key : nullptr);
}

std::wstring Expanded(const std::wstring& text) {
  std::wstring expanded(ExpandEnvironmentStringsW(text.c_str(), nullptr, 0), L'\0');
  ExpandEnvironmentStringsW(text.c_str(), expanded.data(), static_cast<DWORD>(expanded.size()));
  return expanded.c_str();
}

/// What the suite's installation has set; empty when it has set none or something that is no text.
std::wstring DirectorySetting() {
  const Key key = SuiteKey();
  if (!key) return {};
  DWORD type = REG_NONE;
  DWORD size = 0;
  if (RegQueryValueExW(key.get(), kDirectoryValue, nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
    return {};
  if (type != REG_SZ && type != REG_EXPAND_SZ) return {};
  std::wstring text(size / sizeof(wchar_t) + 1, L'\0');  // a stored text need not end with a zero
  if (RegQueryValueExW(key.get(), kDirectoryValue, nullptr, &type, reinterpret_cast<BYTE*>(text.data()),
                       &size) != ERROR_SUCCESS)
    return {};
  text.resize(text.find(L'\0'));
  return type == REG_EXPAND_SZ ? Expanded(text) : text;
}

}  // namespace

std::wstring SettingsDirectory() {
  std::wstring directory = DirectorySetting();
  if (directory.empty()) return kDefaultDirectory;
  return directory.ends_with(L'\\') ? directory : directory + L'\\';
}

/// The suite's other programs put the folder right behind what is set, whether or not that ends with a
/// separator.
std::optional<std::wstring> DataDirectory() {
  const std::wstring setting = DirectorySetting();
  const std::wstring data = (setting.empty() ? kDefaultDirectory : setting) + kDataFolder;
  const bool usable = ThisProgram().IsAbsolutePath(data) && data.size() < MAX_PATH;
  return usable ? std::optional(data) : std::nullopt;
}

}  // namespace qlx::platform
