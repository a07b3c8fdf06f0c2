// The demo's conversation with one device, without its window.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

#include "demo/demo_commands.h"
#include "serial/SerialLink.h"

namespace qlx {

/// Something to show: a line of the session's own, a text of the catalogues, or a block as it was received.
using SessionEvent = std::variant<std::wstring, std::vector<std::uint8_t>>;

/// Collects what happens until it is taken, in order and without loss: a reader that is far ahead waits. All
/// operations belong to one thread, the user-interface thread.
class SerialSession {
 public:
  /// `wake` is called, from any thread, each time that something is there to take after nothing was. It must
  /// not wait. `while_waiting` is SerialLink's.
  SerialSession(SerialLink::OpenPort open_port, std::function<void()> wake,
                std::function<void()> while_waiting = {});
  SerialSession(const SerialSession&) = delete;
  SerialSession& operator=(const SerialSession&) = delete;
  ~SerialSession() { Close(); }

  /// False when the port cannot be opened; a line tells why. Once in a session's life.
  bool Open(const std::wstring& port);

  /// Announces and writes every chunk. A chunk that the device does not take gives a line, and the next one
  /// is tried; after Stop the rest is left.
  void Send(const DemoCommand& command);

  /// The oldest events, until they hold `size` bytes and characters together; at least one where there is
  /// any.
  std::vector<SessionEvent> Take(std::size_t size);

  /// Ends the reader and a Send that waits; they are left to end by themselves.
  void Stop();
  /// Stops, and returns when the reader has ended. What was not taken by then can still be.
  void Close();

 private:
  void AddFromReader(SessionEvent event);
  void Add(SessionEvent event);

  std::function<void()> wake_;
  std::mutex lock_;
  std::condition_variable room_;
  std::deque<SessionEvent> events_;
  bool announced_ = false;  ///< the line of the opening is there: the reader's events come after it
  bool stopped_ = false;
  SerialLink link_;
};

}  // namespace qlx
