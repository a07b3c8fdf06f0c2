#include "sim/Suite.h"

namespace qlx::sim {

Suite::Suite(EventLoop& loop, const SuiteOptions& options, const Say& say)
    : directory_(options.directory),
      bus_(options.directory),
      log_service_(
          loop, [path = options.configuration] { return ReadLogSettings(path); }, options.log_directory, say),
      devices_(
          loop, {options.directory / "ports", options.ports, options.log_directory},
          [path = options.configuration] { return ReadDeviceSettings(path); }, say),
      manager_(loop, bus_.address(), say),
      control_(
          loop, options.directory / "control", Commands::kLongestLine,
          [this](const std::string& command) { return Execute(command); }, say) {
  manager_.OnLoseBus([this] { bus_.Kill(); });
  for (const auto& [name, behaviour] : options.behaviours) {
    const bool logs = name == "QLXLOGSVC";
    manager_.Add(
        name + ".service", behaviour, [this, logs] { return logs ? log_service_.Start() : StartDevices(); },
        [this, logs] { logs ? log_service_.Stop() : devices_.Stop(); });
  }
  devices_.devices().printer.Become(*options.printer);
  if (options.never_answer) manager_.FallSilent();
}

bool Suite::StartDevices() {
  devices_.Start();
  return true;
}

std::string Suite::Environment() const {
  return "export DBUS_SYSTEM_BUS_ADDRESS='" + bus_.address() + "'\n" +  //
         "export QUILLON_PORT_DIR='" + (directory_ / "ports").native() + "'\n" + "export QLXSIM_CONTROL='" +
         (directory_ / "control").native() + "'\n";
}

}  // namespace qlx::sim
