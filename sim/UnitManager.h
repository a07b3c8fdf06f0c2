// The service manager's side of the bus: what systemd answers about the suite's units.
#pragma once

#include <map>
#include <memory>
#include <string>

#include <systemd/sd-bus.h>

#include "sim/EventLoop.h"
#include "sim/Say.h"
#include "sim/Unit.h"

namespace qlx::sim {

/// Owns `org.freedesktop.systemd1` on the bus at `address`, with the Manager's LoadUnit, GetUnit, StartUnit,
/// StopUnit and JobRemoved, and unit objects with the properties that tell their state. Belongs to its loop's
/// thread. Throws std::system_error when the bus cannot be reached or the name is taken.
class UnitManager {
 public:
  UnitManager(EventLoop& loop, const std::string& address, Say say);
  UnitManager(const UnitManager&) = delete;
  UnitManager& operator=(const UnitManager&) = delete;
  ~UnitManager();

  /// Adds the unit `name`, such as "QLXSVC.service". `start` and `stop` are called as its service would run;
  /// a unit that is up from the beginning starts here.
  Unit& Add(const std::string& name, const UnitBehaviour& behaviour, std::function<bool()> start,
            std::function<void()> stop);
  /// From now on no call gets an answer.
  void FallSilent() { silent_ = true; }
  /// What a unit that loses the bus does.
  void OnLoseBus(std::function<void()> lose_bus) { lose_bus_ = std::move(lose_bus); }

 private:
  struct Calls;
  struct Entry {
    std::string name;
    std::string path;
    std::unique_ptr<Unit> unit;
  };

  Entry& Load(const std::string& name);
  void Publish();
  int Request(sd_bus_message* call, JobKind kind, sd_bus_error* error);
  int Refusal(const Entry& entry, JobKind kind, sd_bus_error* error);
  void OnStateChanged(const Entry& entry);
  void OnJobRemoved(const Entry& entry, const Unit::Job& job, const char* result);

  EventLoop& loop_;
  Say say_;
  sd_bus* bus_ = nullptr;
  std::map<std::string, Entry> entries_;
  std::function<void()> lose_bus_ = [] {};
  std::uint32_t last_job_ = 0;
  bool silent_ = false;
};

}  // namespace qlx::sim
