#include "log/Logger.h"

#include "config/start_up.h"

namespace qlx {
namespace {

/// The keys as the file holds them now; both readers look for the file themselves.
std::vector<ConfigNode> ReadKeys(const LoggerSystem& system) {
  const std::wstring path = ConfigurationPath(system.program);
  system.debug_output.Write(L"[MZP]: Log Library XML File Path = " + path);
  // On a platform that knows no drive letters the default path would name a file of the current directory.
  if (!system.program.IsAbsolutePath(path)) return {};
  return system.read_keys(path);
}

LogSettings ReadSettings(const LoggerSystem& system) {
  LogSettings settings;
  ReadFilterKeys(ReadKeys(system), settings);
  system.debug_output.Write(L"[MZP]: Log Library TCP Port = " + std::to_wstring(settings.port));
  ReadFileKeys(ReadKeys(system), settings);
  return settings;
}

}  // namespace

Logger::Logger(const LoggerSystem& system)
    : program_(system.program),
      process_id_(system.program.ProcessId()),
      settings_(ReadSettings(system)),
      delivery_(settings_.port, system.make_socket) {}

void Logger::Write(std::uint32_t module, std::uint32_t level, std::string_view text) {
  const LogRecord record{module, level, text, program_.Now(), program_.ThreadId(), process_id_};
  const std::lock_guard instance(instance_lock_);
  delivery_.Deliver(formatter_.Format(record));
}

}  // namespace qlx
