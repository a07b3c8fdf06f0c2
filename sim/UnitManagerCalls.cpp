#include "sim/UnitManagerCalls.h"

#include <cstdlib>
#include <memory>

namespace qlx::sim {

std::string JobPath(std::uint32_t id) {
  return id == 0 ? "/" : "/org/freedesktop/systemd1/job/" + std::to_string(id);
}

bool IsUnitName(std::string_view name) {
  return name.size() > 8 && name.size() < 256 && name.ends_with(".service") &&
         name.find('/') == std::string_view::npos;
}

int RefuseName(const char* name, sd_bus_error* error) {
  return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "Unit name %s is not valid.", name);
}

int UnitManager::Calls::LoadUnit(sd_bus_message* call, void* self, sd_bus_error* error) {
  const char* name = nullptr;
  if (const int read = sd_bus_message_read(call, "s", &name); read < 0) return read;
  if (!IsUnitName(name)) return RefuseName(name, error);
  return sd_bus_reply_method_return(call, "o", static_cast<UnitManager*>(self)->Load(name).path.c_str());
}

int UnitManager::Calls::GetUnit(sd_bus_message* call, void* self, sd_bus_error* error) {
  const char* name = nullptr;
  if (const int read = sd_bus_message_read(call, "s", &name); read < 0) return read;
  const auto& entries = static_cast<UnitManager*>(self)->entries_;
  const auto found = entries.find(name);
  if (found == entries.end()) return sd_bus_error_setf(error, kNoSuchUnit, "Unit %s not loaded.", name);
  return sd_bus_reply_method_return(call, "o", found->second.path.c_str());
}

int UnitManager::Calls::StartUnit(sd_bus_message* call, void* self, sd_bus_error* error) {
  return static_cast<UnitManager*>(self)->Request(call, JobKind::kStart, error);
}

int UnitManager::Calls::StopUnit(sd_bus_message* call, void* self, sd_bus_error* error) {
  return static_cast<UnitManager*>(self)->Request(call, JobKind::kStop, error);
}

int UnitManager::Calls::FindUnit(sd_bus*, const char* path, const char*, void* self, void** found,
                                 sd_bus_error*) {
  char* name = nullptr;
  if (const int decoded = sd_bus_path_decode(path, kUnitPath, &name); decoded <= 0) return decoded;
  const std::unique_ptr<char, decltype(&std::free)> owner(name, &std::free);
  if (!IsUnitName(name)) return 0;
  *found = &static_cast<UnitManager*>(self)->Load(name);
  return 1;
}

int UnitManager::Calls::Property(sd_bus*, const char*, const char*, const char* property,
                                 sd_bus_message* reply, void* entry, sd_bus_error*) {
  const auto& [name, path, unit] = *static_cast<Entry*>(entry);
  const std::string_view wanted = property;
  const char* text = name.c_str();
  if (wanted == "LoadState") text = unit->behaviour().missing ? "not-found" : "loaded";
  if (wanted == "ActiveState") text = ToText(unit->state());
  return sd_bus_message_append(reply, "s", text);
}

int UnitManager::Calls::Job(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                            void* entry, sd_bus_error*) {
  const auto& job = static_cast<Entry*>(entry)->unit->job();
  const std::uint32_t id = job ? job->id : 0;
  return sd_bus_message_append(reply, "(uo)", id, JobPath(id).c_str());
}

/// Swallows every call while the manager is silent; answers to our own calls still pass.
int UnitManager::Calls::Filter(sd_bus_message* message, void* self, sd_bus_error*) {
  return static_cast<UnitManager*>(self)->silent_ && sd_bus_message_is_method_call(message, nullptr, nullptr);
}

int UnitManager::Calls::OnDisconnected(sd_bus_message*, void* self, sd_bus_error*) {
  static_cast<UnitManager*>(self)->say_("bus lost");
  return 0;
}

const std::array<sd_bus_vtable, 7> UnitManager::Calls::kManager = {{
    SD_BUS_VTABLE_START(SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("LoadUnit", "s", "o", LoadUnit, 0),
    SD_BUS_METHOD("GetUnit", "s", "o", GetUnit, 0),
    SD_BUS_METHOD("StartUnit", "ss", "o", StartUnit, 0),
    SD_BUS_METHOD("StopUnit", "ss", "o", StopUnit, 0),
    SD_BUS_SIGNAL("JobRemoved", "uoss", 0),
    SD_BUS_VTABLE_END,
}};

const std::array<sd_bus_vtable, 6> UnitManager::Calls::kUnit = {{
    SD_BUS_VTABLE_START(SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("Id", "s", Property, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("LoadState", "s", Property, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("ActiveState", "s", Property, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
    SD_BUS_PROPERTY("Job", "(uo)", Job, 0, SD_BUS_VTABLE_PROPERTY_EMITS_INVALIDATION),
    SD_BUS_VTABLE_END,
}};

}  // namespace qlx::sim
