// The simulated suite as a whole: a private bus, the service manager on it, and the services behind its
// units.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "sim/BusDaemon.h"
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
  std::map<std::string, UnitBehaviour> behaviours{{"QLXSVC", {}}, {"QLXLOGSVC", {}}};
  bool never_answer = false;
};

/// Runs in its loop. Throws what its parts throw when one of them cannot start.
class Suite {
 public:
  Suite(EventLoop& loop, const SuiteOptions& options, const Say& say);

  /// Shell lines that lead a program to this suite.
  std::string Environment() const;

 private:
  BusDaemon bus_;
  LogService log_service_;
  UnitManager manager_;
};

}  // namespace qlx::sim
