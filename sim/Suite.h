// The simulated suite as a whole: a private bus, the service manager on it, the services behind its
// units, the devices, and the commands that move them.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "sim/BusDaemon.h"
#include "sim/Commands.h"
#include "sim/ControlSocket.h"
#include "sim/DevicePorts.h"
#include "sim/EventLoop.h"
#include "sim/LogService.h"
#include "sim/Say.h"
#include "sim/Unit.h"
#include "sim/UnitManager.h"

namespace qlx::sim {

struct SuiteOptions {
  std::filesystem::path configuration;
  std::filesystem::path directory;      ///< exists; holds the sockets
  std::filesystem::path log_directory;  ///< exists
  std::vector<std::string> ports{"COM3", "COM4", "COM5", "COM6", "COM7", "COM8", "COM9", "COM10"};
  std::map<std::string, UnitBehaviour> behaviours{{"QLXSVC", {}}, {"QLXLOGSVC", {}}};
  const DescribedPrinter* printer = &kDescribedPrinters[0];
  bool never_answer = false;
};

/// Runs in its loop. Throws what its parts throw when one of them cannot start.
class Suite {
 public:
  Suite(EventLoop& loop, const SuiteOptions& options, const Say& say);

  /// Shell lines that lead a program to this suite.
  std::string Environment() const;
  /// The answer to one command, as the control socket gives it.
  std::string Execute(const std::string& command) { return commands_.Execute(command); }

 private:
  bool StartDevices();

  std::filesystem::path directory_;
  BusDaemon bus_;
  LogService log_service_;
  DevicePorts devices_;
  UnitManager manager_;
  Commands commands_{devices_};
  ControlSocket control_;
};

}  // namespace qlx::sim
