// A test's own end of a connection on the loopback address. Blocking, never inherited by a child process.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace qlx::test {

class StreamSocket {
 public:
  /// Throws when the system has none left.
  StreamSocket();
  StreamSocket(StreamSocket&& other) noexcept : handle_(std::exchange(other.handle_, kNone)) {}
  StreamSocket(const StreamSocket&) = delete;
  StreamSocket& operator=(const StreamSocket&) = delete;
  StreamSocket& operator=(StreamSocket&&) = delete;
  ~StreamSocket() { Close(); }

  /// Listens on `port`, or on one that is free when it is 0; answers which. `backlog` bounds the connections
  /// that wait for Accept. Throws when the port cannot be had.
  std::uint16_t Listen(std::uint16_t port, int backlog);
  StreamSocket Accept() const;

  /// Begins to connect to `port` and does not wait for the end of it.
  void BeginConnect(std::uint16_t port);

  /// True when, within `limit_ms`, there is a connection to accept, a byte to read or the peer's end.
  bool WaitReadable(int limit_ms) const;
  /// True when the connection stands or was refused within `limit_ms`.
  bool WaitConnected(int limit_ms) const;

  /// What has come, at most 64 KiB; empty once the connection has ended.
  std::string Read();

  void Close();
  /// Ends the connection as a crashed service does: the peer gets a reset.
  void Reset();

 private:
  /// A descriptor or the other system's handle: both fit.
  using Handle = std::intptr_t;
  static constexpr Handle kNone = -1;

  explicit StreamSocket(Handle handle) : handle_(handle) {}

  Handle handle_;
};

}  // namespace qlx::test
