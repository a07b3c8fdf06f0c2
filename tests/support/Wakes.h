// Wakes that one thread counts and another waits for.
#pragma once

#include <condition_variable>
#include <mutex>

namespace qlx::testing {

class Wakes {
 public:
  void Add() {
    {
      const std::lock_guard guard(lock_);
      ++count_;
    }
    added_.notify_one();
  }

  /// Waits for a wake that was not yet waited for.
  void Await() {
    std::unique_lock guard(lock_);
    added_.wait(guard, [this] { return count_ > 0; });
    --count_;
  }

 private:
  std::mutex lock_;
  std::condition_variable added_;
  int count_ = 0;
};

}  // namespace qlx::testing
