#include "platform/directories.h"

#include <array>
#include <memory>

#include <windows.h>

#include "platform/windows/final_path.h"
#include "platform/windows/private_directory.h"

namespace qlx::platform {
namespace {

constexpr wchar_t kFallback[] = L"C:\\Windows\\Temp\\";
constexpr DWORD kNotRegular = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DEVICE;

struct CloseFind {
  void operator()(HANDLE find) const { FindClose(find); }
};

std::wstring FullPath(const std::wstring& path) {
  std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return full;
}

/// A drive's root, "X:\", or a server's share, "\\server\share", with or without separators behind.
bool IsRoot(std::wstring path) {
  while (path.ends_with(L'\\')) path.pop_back();
  if (!path.starts_with(L"\\\\")) return path.size() <= 2;
  const std::size_t share = path.find(L'\\', 2);
  return share == std::wstring::npos || path.find(L'\\', share + 1) == std::wstring::npos;
}

}  // namespace

std::wstring TemporaryDirectory() {
  std::array<wchar_t, MAX_PATH + 1> path{};
  const DWORD length = GetTempPathW(static_cast<DWORD>(path.size()), path.data());
  return length == 0 || length >= path.size() ? kFallback : std::wstring(path.data(), length);
}

bool MakePrivateDirectory(const std::wstring& path) {
  return CreatePrivateDirectory(path) || (GetLastError() == ERROR_ALREADY_EXISTS && IsPrivateDirectory(path));
}

std::vector<std::wstring> RegularFilesIn(const std::wstring& directory) {
  std::vector<std::wstring> names;
  const bool separated = directory.empty() || directory.ends_with(L'\\') || directory.ends_with(L'/');
  WIN32_FIND_DATAW found{};
  const HANDLE find = FindFirstFileW((directory + (separated ? L"*" : L"\\*")).c_str(), &found);
  if (find == INVALID_HANDLE_VALUE) return names;
  const std::unique_ptr<void, CloseFind> owner(find);
  do {
    if ((found.dwFileAttributes & kNotRegular) == 0) names.emplace_back(found.cFileName);
  } while (FindNextFileW(find, &found) != 0);
  return names;
}

bool IsRootDirectory(const std::wstring& directory) {
  if (directory.empty()) return true;
  return IsRoot(FinalPath(directory).value_or(FullPath(directory)));
}

bool RemoveFile(const std::wstring& path) {
  if (DeleteFileW(path.c_str()) != 0) return true;
  const DWORD error = GetLastError();
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

}  // namespace qlx::platform
