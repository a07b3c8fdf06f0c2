#include "platform/linux/systemd_manager.h"

#include <cerrno>
#include <cstdlib>
#include <string>

#include <systemd/sd-bus.h>

namespace qlx::platform {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

constexpr const char* kDestination = "org.freedesktop.systemd1";
constexpr const char* kManagerPath = "/org/freedesktop/systemd1";
constexpr const char* kManagerInterface = "org.freedesktop.systemd1.Manager";
constexpr const char* kUnitInterface = "org.freedesktop.systemd1.Unit";

/// Without a flush: every call has had its answer, and flushing to a bus that never greeted takes minutes.
struct BusCloser {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using Bus = std::unique_ptr<sd_bus, BusCloser>;

struct MessageCloser {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, MessageCloser>;

/// sd-bus answers with a negative errno on failure.
std::optional<int> ErrorOf(int result) {
  if (result < 0) return -result;
  return std::nullopt;
}

/// Brings the connection through its greeting. sd-bus would do so within the first call, but without our
/// limit: a bus that accepts and says nothing would hold the caller for minutes.
int AwaitReady(sd_bus* bus, microseconds limit) {
  const auto deadline = Clock::now() + limit;
  while (true) {
    if (const int ready = sd_bus_is_ready(bus); ready != 0) return ready;
    const int processed = sd_bus_process(bus, nullptr);
    if (processed < 0) return processed;
    if (processed > 0) continue;
    const auto left = std::chrono::duration_cast<microseconds>(deadline - Clock::now());
    if (left <= microseconds::zero()) return -ETIMEDOUT;
    const int waited = sd_bus_wait(bus, static_cast<std::uint64_t>(left.count()));
    if (waited < 0 && waited != -EINTR) return waited;
  }
}

std::optional<int> Connect(Bus& bus, microseconds limit) {
  sd_bus* opened = nullptr;
  if (const int result = sd_bus_open_system(&opened); result < 0) return -result;
  bus.reset(opened);
  sd_bus_set_method_call_timeout(opened, static_cast<std::uint64_t>(limit.count()));
  return ErrorOf(AwaitReady(opened, limit));
}

class Unit final : public Service {
 public:
  Unit(sd_bus* bus, std::optional<int> connect_error, std::string name)
      : bus_(bus), name_(std::move(name)), open_error_(connect_error ? connect_error : Load()) {}

  std::optional<ServiceState> QueryState() override {
    std::string active;
    if (open_error_ || ReadProperty("ActiveState", active)) return std::nullopt;
    if (active == "active") return ServiceState::kRunning;
    if (active == "failed") return ServiceState::kStopped;
    if (active != "inactive") return ServiceState::kPending;
    std::string load;
    if (ReadProperty("LoadState", load) || load == "not-found") return std::nullopt;
    return ServiceState::kStopped;
  }

  std::optional<int> RequestStop() override { return open_error_ ? open_error_ : Request("StopUnit"); }

  std::optional<int> Start() override {
    if (open_error_) return open_error_;
    if (const auto error = Request("StartUnit")) return error;
    return AwaitStarted();
  }

 private:
  std::optional<int> Load() {
    sd_bus_message* reply = nullptr;
    const int called = sd_bus_call_method(bus_, kDestination, kManagerPath, kManagerInterface, "LoadUnit",
                                          nullptr, &reply, "s", name_.c_str());
    const Message owner(reply);
    if (called < 0) return -called;
    const char* path = nullptr;
    if (const int read = sd_bus_message_read(reply, "o", &path); read < 0) return -read;
    path_ = path;
    return std::nullopt;
  }

  std::optional<int> Request(const char* method) {
    return ErrorOf(sd_bus_call_method(bus_, kDestination, kManagerPath, kManagerInterface, method, nullptr,
                                      nullptr, "ss", name_.c_str(), "replace"));
  }

  std::optional<int> ReadProperty(const char* property, std::string& value) {
    char* text = nullptr;
    const int result = sd_bus_get_property_string(bus_, kDestination, path_.c_str(), kUnitInterface, property,
                                                  nullptr, &text);
    const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
    if (result >= 0) value = text;
    return ErrorOf(result);
  }

  std::optional<int> ReadJob(std::uint32_t& id) {
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_get_property(bus_, kDestination, path_.c_str(), kUnitInterface, "Job", nullptr,
                                           &reply, "(uo)");
    const Message owner(reply);
    return ErrorOf(result < 0 ? result : sd_bus_message_read(reply, "(uo)", &id, nullptr));
  }

  /// The unit's state decides, not the job's result. The job is read before the state: while it waits in the
  /// queue the unit is still inactive, and only without it is "inactive" the outcome.
  std::optional<int> AwaitStarted() {
    while (true) {
      std::uint32_t job = 0;
      if (const auto error = ReadJob(job)) return error;
      std::string active;
      if (const auto error = ReadProperty("ActiveState", active)) return error;
      if (active == "active" || active == "activating") return std::nullopt;
      if (job == 0 && (active == "inactive" || active == "failed")) return EIO;
    }
  }

  sd_bus* bus_;
  std::string name_;
  std::string path_;
  std::optional<int> open_error_;
};

class SystemdManager final : public ServiceManager {
 public:
  explicit SystemdManager(microseconds call_limit) : connect_error_(Connect(bus_, call_limit)) {}

  std::unique_ptr<Service> Open(std::string_view name) override {
    return std::make_unique<Unit>(bus_.get(), connect_error_, std::string(name) + ".service");
  }

 private:
  Bus bus_;
  std::optional<int> connect_error_;
};

}  // namespace

std::unique_ptr<ServiceManager> OpenSystemdManager(std::chrono::milliseconds call_limit) {
  return std::make_unique<SystemdManager>(call_limit);
}

}  // namespace qlx::platform
