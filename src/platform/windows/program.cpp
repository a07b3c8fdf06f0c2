#include "platform/program.h"

#include <array>

#include <windows.h>

#include "platform/windows/module_path.h"

namespace qlx::platform {
namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;     // a file time counts 100 nanoseconds
constexpr std::int64_t kSecondsTo1970 = 11'644'473'600;  // from 1601
constexpr std::int64_t kTicksPerMillisecond = kTicksPerSecond / 1000;

bool IsSeparator(wchar_t c) {
  return c == L'\\' || c == L'/';
}

class WindowsProgram final : public Program {
 public:
  std::optional<std::wstring> PathBesideExecutable(std::wstring_view file_name) const override {
    std::array<wchar_t, MAX_PATH> module{};
    const DWORD length = GetModuleFileNameW(nullptr, module.data(), MAX_PATH);
    if (length == 0 || length == MAX_PATH) return std::nullopt;  // none, or cut
    return PathBesideModule({module.data(), length}, file_name);
  }

  bool IsAbsolutePath(std::wstring_view path) const override {
    if (path.size() < 3) return false;
    const bool on_server = path[0] == L'\\' && path[1] == L'\\';
    return on_server || (path[1] == L':' && IsSeparator(path[2]));
  }

  std::uint32_t ProcessId() const override { return GetCurrentProcessId(); }

  std::uint32_t ThreadId() const override { return GetCurrentThreadId(); }

  WallTime Now() const override {
    FILETIME time{};
    GetSystemTimeAsFileTime(&time);
    const std::int64_t ticks = static_cast<std::int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    return {ticks / kTicksPerSecond - kSecondsTo1970,
            static_cast<std::uint16_t>(ticks % kTicksPerSecond / kTicksPerMillisecond)};
  }
};

}  // namespace

std::optional<std::wstring> PathBesideModule(std::wstring_view module, std::wstring_view file_name) {
  const std::size_t separator = module.rfind(L'\\');
  if (separator == std::wstring_view::npos) return std::nullopt;
  std::wstring path = std::wstring(module.substr(0, separator + 1)).append(file_name);
  return path.size() < MAX_PATH ? std::optional(std::move(path)) : std::nullopt;
}

const Program& ThisProgram() {
  static const WindowsProgram program;
  return program;
}

}  // namespace qlx::platform
