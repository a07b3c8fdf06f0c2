// One simulated unit: a service's states and jobs as systemd runs them, with its departures from the good.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "sim/EventLoop.h"

namespace qlx::sim {

/// A good unit starts and stops at once; each member is one departure from that.
struct UnitBehaviour {
  std::chrono::milliseconds queue_takes{1};  ///< a job waits; never 0, as with systemd
  std::chrono::milliseconds start_takes{0};
  std::chrono::milliseconds stop_takes{0};
  bool stopped = false;        ///< not running at the beginning
  bool missing = false;        ///< the manager knows no such unit
  bool refuse_stop = false;    ///< a request to stop is denied
  bool refuse_start = false;   ///< a request to start is denied
  bool hang_stopping = false;  ///< stays deactivating until released
  bool hang_starting = false;  ///< stays activating until released
  bool fail_stop = false;      ///< stopping ends in "failed"
  bool fail_start = false;     ///< starting goes straight to "failed"
  bool lose_bus = false;       ///< a request to stop ends the bus instead
};

enum class ActiveState { kInactive, kActivating, kActive, kDeactivating, kFailed };
enum class JobKind { kStart, kStop };

/// The texts of the bus interface, "inactive" to "failed".
const char* ToText(ActiveState state);

/// Belongs to its loop's thread.
class Unit {
 public:
  struct Job {
    std::uint32_t id;
    JobKind kind;
  };

  /// What the unit does and whom it tells. `start` false: the service could not come up.
  struct Events {
    std::function<bool()> start = [] { return true; };
    std::function<void()> stop = [] {};
    std::function<void()> state_changed = [] {};
    /// `result` as in systemd's JobRemoved: "done", "failed", "canceled".
    std::function<void(const Job& job, const char* result)> job_removed = [](const Job&, const char*) {};
  };

  Unit(EventLoop& loop, const UnitBehaviour& behaviour, Events events);

  /// Queues a job in place of the one that waits; the unit's state changes after this call.
  void Enqueue(const Job& job);
  /// Lets a hanging unit go on.
  void Release();

  ActiveState state() const { return state_; }
  const std::optional<Job>& job() const { return job_; }
  const UnitBehaviour& behaviour() const { return behaviour_; }

 private:
  void RunJob();
  void BeginStart();
  void Begin(ActiveState pending, std::chrono::milliseconds takes, bool hangs);
  void EndPending();
  void Enter(ActiveState state);
  void Finish(const char* result);

  EventLoop& loop_;
  UnitBehaviour behaviour_;
  Events events_;
  ActiveState state_ = ActiveState::kInactive;
  std::optional<Job> job_;
  EventSource run_;
  EventSource pending_;
};

}  // namespace qlx::sim
