#include "platform/windows/final_path.h"

#include <string_view>

#include "platform/windows/Handle.h"

namespace qlx::platform {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr std::wstring_view kLocal = L"\\\\?\\";
constexpr std::wstring_view kServer = L"\\\\?\\UNC\\";

std::wstring WithoutPrefix(const std::wstring& path) {
  if (path.size() >= MAX_PATH) return path;  // a longer one can be used with its prefix only
  if (path.starts_with(kServer)) return L"\\\\" + path.substr(kServer.size());
  return path.starts_with(kLocal) ? path.substr(kLocal.size()) : path;
}

}  // namespace

std::optional<std::wstring> FinalPath(HANDLE file) {
  std::wstring name(GetFinalPathNameByHandleW(file, nullptr, 0, FILE_NAME_NORMALIZED), L'\0');
  const auto size = static_cast<DWORD>(name.size());
  const DWORD length = GetFinalPathNameByHandleW(file, name.data(), size, FILE_NAME_NORMALIZED);
  if (length == 0 || length >= size) return std::nullopt;
  name.resize(length);
  return WithoutPrefix(name);
}

std::optional<std::wstring> FinalPath(const std::wstring& path) {
  // Backup semantics: without them no directory can be opened.
  const Handle file(
      CreateFileW(path.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  return file ? FinalPath(file.get()) : std::nullopt;
}

}  // namespace qlx::platform
