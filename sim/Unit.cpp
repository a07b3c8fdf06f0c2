#include "sim/Unit.h"

#include <array>
#include <utility>

namespace qlx::sim {

using std::chrono::milliseconds;

const char* ToText(ActiveState state) {
  constexpr std::array kTexts = {"inactive", "activating", "active", "deactivating", "failed"};
  return kTexts[static_cast<std::size_t>(state)];
}

Unit::Unit(EventLoop& loop, const UnitBehaviour& behaviour, Events events)
    : loop_(loop), behaviour_(behaviour), events_(std::move(events)) {
  if (behaviour.stopped || behaviour.missing) return;
  state_ = events_.start() ? ActiveState::kActive : ActiveState::kFailed;
}

void Unit::Enqueue(const Job& job) {
  if (job_) Finish("canceled");
  job_ = job;
  // Not at once: the caller has its answer while the unit is still in its old state, as with systemd.
  run_ = loop_.After(behaviour_.queue_takes, [this] { RunJob(); });
}

void Unit::RunJob() {
  if (!job_) return;
  const bool up = state_ == ActiveState::kActive;
  const bool down = state_ == ActiveState::kInactive || state_ == ActiveState::kFailed;
  const bool starting = state_ == ActiveState::kActivating;
  if (job_->kind == JobKind::kStart) {
    if (up) return Finish("done");
    if (down) BeginStart();
  } else {
    if (down) return Finish("done");
    if (up || starting) Begin(ActiveState::kDeactivating, behaviour_.stop_takes, behaviour_.hang_stopping);
  }
}

void Unit::BeginStart() {
  if (!behaviour_.fail_start) {
    return Begin(ActiveState::kActivating, behaviour_.start_takes, behaviour_.hang_starting);
  }
  Enter(ActiveState::kFailed);
  Finish("failed");
}

void Unit::Begin(ActiveState pending, milliseconds takes, bool hangs) {
  Enter(pending);
  pending_ = {};
  if (!hangs) pending_ = loop_.After(takes, [this] { EndPending(); });
}

void Unit::Release() {
  behaviour_.hang_stopping = behaviour_.hang_starting = false;
  if (state_ == ActiveState::kActivating || state_ == ActiveState::kDeactivating) EndPending();
}

void Unit::EndPending() {
  const bool starting = state_ == ActiveState::kActivating;
  const bool good = starting ? events_.start() : !behaviour_.fail_stop;
  if (!starting) events_.stop();
  const ActiveState end = starting ? ActiveState::kActive : ActiveState::kInactive;
  Enter(good ? end : ActiveState::kFailed);
  if (job_ && starting == (job_->kind == JobKind::kStart))
    return Finish(good || !starting ? "done" : "failed");
  RunJob();
}

void Unit::Enter(ActiveState state) {
  state_ = state;
  events_.state_changed();
}

void Unit::Finish(const char* result) {
  const Job ended = *std::exchange(job_, std::nullopt);
  events_.job_removed(ended, result);
}

}  // namespace qlx::sim
