#include "sim/UnitManager.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <system_error>

namespace qlx::sim {
namespace {

constexpr const char* kPath = "/org/freedesktop/systemd1";
constexpr const char* kUnitPath = "/org/freedesktop/systemd1/unit";
constexpr const char* kManagerInterface = "org.freedesktop.systemd1.Manager";
constexpr const char* kUnitInterface = "org.freedesktop.systemd1.Unit";
constexpr const char* kNoSuchUnit = "org.freedesktop.systemd1.NoSuchUnit";

void Check(int result, const char* what) {
  if (result < 0) throw std::system_error(-result, std::generic_category(), what);
}

std::string PathOf(const std::string& unit) {
  char* path = nullptr;
  Check(sd_bus_path_encode(kUnitPath, unit.c_str(), &path), "unit path");
  const std::unique_ptr<char, decltype(&std::free)> owner(path, &std::free);
  return path;
}

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

}  // namespace

/// The handlers that the bus calls; `self` is the manager, or the entry for a unit's properties.
struct UnitManager::Calls {
  static int LoadUnit(sd_bus_message* call, void* self, sd_bus_error* error) {
    const char* name = nullptr;
    if (const int read = sd_bus_message_read(call, "s", &name); read < 0) return read;
    if (!IsUnitName(name)) return RefuseName(name, error);
    return sd_bus_reply_method_return(call, "o", static_cast<UnitManager*>(self)->Load(name).path.c_str());
  }

  static int GetUnit(sd_bus_message* call, void* self, sd_bus_error* error) {
    const char* name = nullptr;
    if (const int read = sd_bus_message_read(call, "s", &name); read < 0) return read;
    const auto& entries = static_cast<UnitManager*>(self)->entries_;
    const auto found = entries.find(name);
    if (found == entries.end()) return sd_bus_error_setf(error, kNoSuchUnit, "Unit %s not loaded.", name);
    return sd_bus_reply_method_return(call, "o", found->second.path.c_str());
  }

  static int StartUnit(sd_bus_message* call, void* self, sd_bus_error* error) {
    return static_cast<UnitManager*>(self)->Request(call, JobKind::kStart, error);
  }

  static int StopUnit(sd_bus_message* call, void* self, sd_bus_error* error) {
    return static_cast<UnitManager*>(self)->Request(call, JobKind::kStop, error);
  }

  static int FindUnit(sd_bus*, const char* path, const char*, void* self, void** found, sd_bus_error*) {
    char* name = nullptr;
    if (const int decoded = sd_bus_path_decode(path, kUnitPath, &name); decoded <= 0) return decoded;
    const std::unique_ptr<char, decltype(&std::free)> owner(name, &std::free);
    if (!IsUnitName(name)) return 0;
    *found = &static_cast<UnitManager*>(self)->Load(name);
    return 1;
  }

  static int Property(sd_bus*, const char*, const char*, const char* property, sd_bus_message* reply,
                      void* entry, sd_bus_error*) {
    const auto& [name, path, unit] = *static_cast<Entry*>(entry);
    const std::string_view wanted = property;
    const char* text = name.c_str();
    if (wanted == "LoadState") text = unit->behaviour().missing ? "not-found" : "loaded";
    if (wanted == "ActiveState") text = ToText(unit->state());
    return sd_bus_message_append(reply, "s", text);
  }

  static int Job(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void* entry,
                 sd_bus_error*) {
    const auto& job = static_cast<Entry*>(entry)->unit->job();
    const std::uint32_t id = job ? job->id : 0;
    return sd_bus_message_append(reply, "(uo)", id, JobPath(id).c_str());
  }

  /// Swallows every call while the manager is silent; answers to our own calls still pass.
  static int Filter(sd_bus_message* message, void* self, sd_bus_error*) {
    return static_cast<UnitManager*>(self)->silent_ &&
           sd_bus_message_is_method_call(message, nullptr, nullptr);
  }

  static int OnDisconnected(sd_bus_message*, void* self, sd_bus_error*) {
    static_cast<UnitManager*>(self)->say_("bus lost");
    return 0;
  }

  static const std::array<sd_bus_vtable, 7> kManager;
  static const std::array<sd_bus_vtable, 6> kUnit;
};

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

UnitManager::UnitManager(EventLoop& loop, const std::string& address, Say say)
    : loop_(loop), say_(std::move(say)) {
  Check(sd_bus_new(&bus_), "bus");
  try {
    Check(sd_bus_set_address(bus_, address.c_str()), "bus address");
    Check(sd_bus_set_bus_client(bus_, 1), "bus client");
    Check(sd_bus_start(bus_), "bus connection");
    Publish();
  } catch (...) {
    sd_bus_close_unref(bus_);
    throw;
  }
}

UnitManager::~UnitManager() {
  sd_bus_detach_event(bus_);
  sd_bus_flush_close_unref(bus_);
}

void UnitManager::Publish() {
  Check(sd_bus_add_filter(bus_, nullptr, Calls::Filter, this), "bus filter");
  Check(sd_bus_add_object_vtable(bus_, nullptr, kPath, kManagerInterface, Calls::kManager.data(), this),
        "manager object");
  Check(sd_bus_add_fallback_vtable(bus_, nullptr, kUnitPath, kUnitInterface, Calls::kUnit.data(),
                                   Calls::FindUnit, this),
        "unit objects");
  Check(sd_bus_match_signal(bus_, nullptr, nullptr, "/org/freedesktop/DBus/Local",
                            "org.freedesktop.DBus.Local", "Disconnected", Calls::OnDisconnected, this),
        "bus end");
  Check(sd_bus_request_name(bus_, "org.freedesktop.systemd1", 0), "bus name");
  Check(sd_bus_attach_event(bus_, loop_.handle(), SD_EVENT_PRIORITY_NORMAL), "bus events");
}

Unit& UnitManager::Add(const std::string& name, const UnitBehaviour& behaviour, std::function<bool()> start,
                       std::function<void()> stop) {
  Entry& entry = entries_[name];
  entry.name = name;
  entry.path = PathOf(name);
  Unit::Events events;
  events.start = std::move(start);
  events.stop = std::move(stop);
  events.state_changed = [this, &entry] { OnStateChanged(entry); };
  events.job_removed = [this, &entry](const Unit::Job& job, const char* result) {
    OnJobRemoved(entry, job, result);
  };
  entry.unit = std::make_unique<Unit>(loop_, behaviour, std::move(events));
  if (!behaviour.missing) say_(name + " " + ToText(entry.unit->state()));
  return *entry.unit;
}

UnitManager::Entry& UnitManager::Load(const std::string& name) {
  if (const auto found = entries_.find(name); found != entries_.end()) return found->second;
  Add(
      name, {.missing = true}, [] { return false; }, [] {});
  return entries_.at(name);
}

int UnitManager::Request(sd_bus_message* call, JobKind kind, sd_bus_error* error) {
  const char* name = nullptr;
  const char* mode = nullptr;
  if (const int read = sd_bus_message_read(call, "ss", &name, &mode); read < 0) return read;
  if (!IsUnitName(name)) return RefuseName(name, error);
  if (std::string_view(mode) != "replace" && std::string_view(mode) != "fail") {
    return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "Job mode %s invalid", mode);
  }
  Entry& entry = Load(name);
  say_(std::string(name) + (kind == JobKind::kStart ? " asked to start" : " asked to stop"));
  if (kind == JobKind::kStop && entry.unit->behaviour().lose_bus) {
    lose_bus_();
    return 1;
  }
  if (const int refusal = Refusal(entry, kind, error); refusal < 0) return refusal;
  const std::uint32_t id = ++last_job_;
  entry.unit->Enqueue({id, kind});
  return sd_bus_reply_method_return(call, "o", JobPath(id).c_str());
}

/// Negative with `error` set when the request is refused, else 0.
int UnitManager::Refusal(const Entry& entry, JobKind kind, sd_bus_error* error) {
  const UnitBehaviour& behaviour = entry.unit->behaviour();
  const bool start = kind == JobKind::kStart;
  if (behaviour.missing) {
    return sd_bus_error_setf(error, kNoSuchUnit, "Unit %s not %s.", entry.name.c_str(),
                             start ? "found" : "loaded");
  }
  if (start ? !behaviour.refuse_start : !behaviour.refuse_stop) return 0;
  say_(entry.name + " refused");
  return sd_bus_error_set_const(error, SD_BUS_ERROR_ACCESS_DENIED, "Access denied");
}

void UnitManager::OnStateChanged(const Entry& entry) {
  say_(entry.name + " " + ToText(entry.unit->state()));
  sd_bus_emit_properties_changed(bus_, entry.path.c_str(), kUnitInterface, "ActiveState", nullptr);
}

void UnitManager::OnJobRemoved(const Entry& entry, const Unit::Job& job, const char* result) {
  sd_bus_emit_signal(bus_, kPath, kManagerInterface, "JobRemoved", "uoss", job.id, JobPath(job.id).c_str(),
                     entry.name.c_str(), result);
}

}  // namespace qlx::sim
