#include "sim/BurstQueue.h"

namespace qlx::sim {

void BurstQueue::Add(const Reaction& reaction) {
  const bool idle = waiting_.empty();
  if (idle && !reaction.answer.empty()) {
    send_(reaction.answer);
  } else if (!reaction.answer.empty()) {
    waiting_.push_back(reaction.answer);
  }
  waiting_.insert(waiting_.end(), reaction.later.begin(), reaction.later.end());
  if (idle) Pause();
}

void BurstQueue::Clear() {
  waiting_.clear();
  next_ = {};
}

void BurstQueue::Pause() {
  if (!waiting_.empty()) next_ = loop_.After(kPause, [this] { SendNext(); });
}

void BurstQueue::SendNext() {
  const std::string burst = std::move(waiting_.front());
  waiting_.pop_front();
  send_(burst);
  Pause();
}

}  // namespace qlx::sim
