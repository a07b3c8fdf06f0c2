#include "sim/Suite.h"

namespace qlx::sim {

Suite::Suite(EventLoop& loop, const SuiteOptions& options, const Say& say)
    : bus_(options.directory),
      log_service_(
          loop, [path = options.configuration] { return ReadLogSettings(path); }, options.log_directory, say),
      manager_(loop, bus_.address(), say) {
  manager_.OnLoseBus([this] { bus_.Kill(); });
  for (const auto& [name, behaviour] : options.behaviours) {
    const bool logs = name == "QLXLOGSVC";
    manager_.Add(
        name + ".service", behaviour, [this, logs] { return !logs || log_service_.Start(); },
        [this, logs] {
          if (logs) log_service_.Stop();
        });
  }
  if (options.never_answer) manager_.FallSilent();
}

std::string Suite::Environment() const {
  return "export DBUS_SYSTEM_BUS_ADDRESS='" + bus_.address() + "'\n";
}

}  // namespace qlx::sim
