// The simulator's one thread: everything it plays happens in calls from this loop.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include <systemd/sd-event.h>

namespace qlx::sim {

/// Stops its source's calls when it goes.
class EventSource {
 public:
  EventSource() = default;
  EventSource(sd_event_source* source, std::unique_ptr<std::function<void()>> handler)
      : handler_(std::move(handler)), source_(source) {}

 private:
  struct Closer {
    void operator()(sd_event_source* source) const { sd_event_source_disable_unref(source); }
  };
  std::unique_ptr<std::function<void()>> handler_;
  std::unique_ptr<sd_event_source, Closer> source_;
};

/// All operations belong to the loop's thread, except where they say otherwise. Throws std::system_error when
/// the system has no descriptors left. A handler may end its own source.
class EventLoop {
 public:
  using Handler = std::function<void()>;

  EventLoop();
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;
  ~EventLoop();

  /// Handles events until Stop.
  void Run();
  /// From any thread.
  void Stop();
  /// Calls `handler` from the loop, after what happens now. From any thread.
  void Post(Handler handler);

  /// Calls `handler` once.
  [[nodiscard]] EventSource After(std::chrono::milliseconds delay, Handler handler);
  /// Calls `handler` as long as `descriptor` has something to read.
  [[nodiscard]] EventSource OnReadable(int descriptor, Handler handler);
  /// Calls `handler` as long as `descriptor` has room for something written.
  [[nodiscard]] EventSource OnWritable(int descriptor, Handler handler);
  /// Calls `handler` for the signal `number`, which every thread must have blocked.
  [[nodiscard]] EventSource OnSignal(int number, Handler handler);

  sd_event* handle() const { return event_; }

 private:
  void RunPosted();
  EventSource OnDescriptor(int descriptor, std::uint32_t events, Handler handler);

  sd_event* event_ = nullptr;
  int wake_ = -1;
  std::mutex posted_lock_;
  std::vector<Handler> posted_;
  EventSource posted_source_;
};

}  // namespace qlx::sim
