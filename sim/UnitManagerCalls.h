// The handlers that the bus calls for the manager and its units.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include <systemd/sd-bus.h>

#include "sim/UnitManager.h"

namespace qlx::sim {

inline constexpr const char* kUnitPath = "/org/freedesktop/systemd1/unit";
inline constexpr const char* kNoSuchUnit = "org.freedesktop.systemd1.NoSuchUnit";

bool IsUnitName(std::string_view name);
/// The bus's answer to a name that no unit can have: negative, with `error` set.
int RefuseName(const char* name, sd_bus_error* error);
/// The object path of the job `id`; that of no job for 0.
std::string JobPath(std::uint32_t id);

/// `self` is the manager, or the entry for a unit's properties.
struct UnitManager::Calls {
  static int LoadUnit(sd_bus_message* call, void* self, sd_bus_error* error);
  static int GetUnit(sd_bus_message* call, void* self, sd_bus_error* error);
  static int StartUnit(sd_bus_message* call, void* self, sd_bus_error* error);
  static int StopUnit(sd_bus_message* call, void* self, sd_bus_error* error);
  static int FindUnit(sd_bus*, const char* path, const char*, void* self, void** found, sd_bus_error*);
  static int Property(sd_bus*, const char*, const char*, const char* property, sd_bus_message* reply,
                      void* entry, sd_bus_error*);
  static int Job(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void* entry,
                 sd_bus_error*);
  static int Filter(sd_bus_message* message, void* self, sd_bus_error*);
  static int OnDisconnected(sd_bus_message*, void* self, sd_bus_error*);

  static const std::array<sd_bus_vtable, 7> kManager;
  static const std::array<sd_bus_vtable, 6> kUnit;
};

}  // namespace qlx::sim
