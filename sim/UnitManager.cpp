#include "sim/UnitManager.h"

#include <cstdlib>
#include <string_view>
#include <system_error>

#include "sim/UnitManagerCalls.h"

namespace qlx::sim {
namespace {

constexpr const char* kPath = "/org/freedesktop/systemd1";
constexpr const char* kManagerInterface = "org.freedesktop.systemd1.Manager";
constexpr const char* kUnitInterface = "org.freedesktop.systemd1.Unit";

void Check(int result, const char* what) {
  if (result < 0) throw std::system_error(-result, std::generic_category(), what);
}

std::string PathOf(const std::string& unit) {
  char* path = nullptr;
  Check(sd_bus_path_encode(kUnitPath, unit.c_str(), &path), "unit path");
  const std::unique_ptr<char, decltype(&std::free)> owner(path, &std::free);
  return path;
}

}  // namespace

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
