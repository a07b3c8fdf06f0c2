// Symbolic links, which a Windows may not let its users make.
#pragma once

#include <bit>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>

#include <windows.h>

namespace qlx::test {

/// The name that the machine under this Windows has for the existing file or directory `path`; throws without
/// one.
inline std::wstring NameBelow(const std::filesystem::path& path) {
  using Translate = char* (*)(const wchar_t*);
  const auto translate =
      std::bit_cast<Translate>(GetProcAddress(GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name"));
  char* const name = translate == nullptr ? nullptr : translate(path.c_str());
  if (name == nullptr) throw std::runtime_error("no link can be made");
  const std::string bytes = name;
  HeapFree(GetProcessHeap(), 0, name);
  return {bytes.begin(), bytes.end()};
}

/// A link to the file `target`, for as long as the object lives: removed before its target, without which
/// some Windows does not find it. Where Windows itself makes none, the machine under it does. Never one to a
/// directory: some Windows takes that for a directory of its own, and who clears the one with the link away
/// clears both.
class FileLink {
 public:
  /// Throws when there is no link after all.
  FileLink(const std::filesystem::path& target, const std::filesystem::path& link) : link_(link) {
    if (!std::filesystem::is_regular_file(target)) throw std::runtime_error("not a file");
    if (CreateSymbolicLinkW(link.c_str(), target.c_str(), 0) != 0 && Exists()) return;
    MakeBelow(target);
    constexpr int kTries = 2000;
    for (int i = 0; i < kTries && !Exists(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    if (!Exists()) throw std::runtime_error("no link can be made");
  }
  FileLink(const FileLink&) = delete;
  FileLink& operator=(const FileLink&) = delete;
  ~FileLink() { DeleteFileW(link_.c_str()); }

 private:
  bool Exists() const { return GetFileAttributesW(link_.c_str()) != INVALID_FILE_ATTRIBUTES; }

  void MakeBelow(const std::filesystem::path& target) const {
    std::wstring line = L"Z:\\bin\\ln -s " + NameBelow(target) + L" " + NameBelow(link_.parent_path()) +
                        L"/" + link_.filename().wstring();
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION started{};
    CreateProcessW(L"Z:\\bin\\ln", line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                   &started);
  }

  std::filesystem::path link_;
};

}  // namespace qlx::test
