// Bytes on their way into a descriptor that does not block.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "platform/linux/Descriptor.h"
#include "sim/EventLoop.h"

namespace qlx::sim {

/// Writes at once what the other side takes and the rest as it makes room. Belongs to its loop's thread.
class Outbox {
 public:
  using Write = ssize_t (*)(int descriptor, const void* bytes, std::size_t count);

  /// Keeps a duplicate of `descriptor`: the loop takes each number once, and the owner reads from its own.
  /// Throws std::system_error when there is none left. `emptied` is called each time that nothing waits any
  /// more after something did; it may end the outbox.
  Outbox(
      EventLoop& loop, int descriptor, Write write, std::size_t most_waiting,
      std::function<void()> emptied = [] {});

  /// False, and none of `bytes` is sent, when more than `most_waiting` bytes would then wait.
  bool Send(std::string_view bytes);
  /// Forgets what waits.
  void Discard();
  bool empty() const { return waiting_.empty(); }

 private:
  void Flush();
  void WriteSome();

  EventLoop& loop_;
  platform::Descriptor descriptor_;
  Write write_;
  std::size_t most_waiting_;
  std::function<void()> emptied_;
  std::string waiting_;
  EventSource writable_;
};

}  // namespace qlx::sim
