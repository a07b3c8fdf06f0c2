#include "platform/program.h"

#include <filesystem>

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include "platform/linux/path_text.h"

namespace qlx::platform {
namespace {

class LinuxProgram final : public Program {
 public:
  std::optional<std::wstring> PathBesideExecutable(std::wstring_view file_name) const override {
    std::error_code failed;
    const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe", failed);
    if (failed || !executable.has_parent_path()) return std::nullopt;
    return PathText((executable.parent_path() / PathBytes(file_name)).native());
  }

  bool IsAbsolutePath(std::wstring_view path) const override { return path.starts_with(L'/'); }

  std::uint32_t ProcessId() const override { return static_cast<std::uint32_t>(getpid()); }

  std::uint32_t ThreadId() const override {
    thread_local const auto id = static_cast<std::uint32_t>(syscall(SYS_gettid));
    return id;
  }

  WallTime Now() const override {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return {now.tv_sec, static_cast<std::uint16_t>(now.tv_nsec / 1'000'000)};
  }
};

}  // namespace

const Program& ThisProgram() {
  static const LinuxProgram program;
  return program;
}

}  // namespace qlx::platform
