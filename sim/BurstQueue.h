// Answers that reach the program in several bursts with a pause between them.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "sim/Device.h"
#include "sim/EventLoop.h"

namespace qlx::sim {

/// Keeps answers in their order: one that comes during a pause waits for its turn. Belongs to its loop's
/// thread.
class BurstQueue {
 public:
  /// Long enough that no reader takes what is before and behind it for one block.
  static constexpr std::chrono::milliseconds kPause{200};

  using Send = std::function<void(std::string_view bytes)>;

  BurstQueue(EventLoop& loop, Send send) : loop_(loop), send_(std::move(send)) {}

  /// Sends the answer at once, or behind what waits, and the later bursts one by one.
  void Add(const Reaction& reaction);
  /// Forgets what waits.
  void Clear();

 private:
  void Pause();
  void SendNext();

  EventLoop& loop_;
  Send send_;
  std::deque<std::string> waiting_;
  EventSource next_;
};

}  // namespace qlx::sim
