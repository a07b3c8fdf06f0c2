// A real TCP service on the loopback address, as badly behaved as a test wants it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/StreamSocket.h"

namespace qlx::test {

/// How long a test waits for what must happen before it counts as failed.
inline constexpr int kLimitMs = 20000;

/// One accepted connection.
class Peer {
 public:
  explicit Peer(StreamSocket socket) : socket_(std::move(socket)) {}

  /// The bytes up to and with `end`; fewer when the connection ends or nothing comes within the limit.
  std::string ReadThrough(const std::string& end) {
    while (received_.find(end) == std::string::npos && ReadMore()) {
    }
    const std::size_t found = received_.find(end);
    const std::size_t size = found == std::string::npos ? received_.size() : found + end.size();
    std::string taken = received_.substr(0, size);
    received_.erase(0, size);
    return taken;
  }

  /// Everything until the client ends the connection.
  std::string ReadAll() {
    while (ReadMore()) {
    }
    return std::exchange(received_, {});
  }

  void Close() { socket_.Close(); }
  void Reset() { socket_.Reset(); }

 private:
  bool ReadMore() {
    if (!socket_.WaitReadable(kLimitMs)) return false;
    const std::string more = socket_.Read();
    received_ += more;
    return !more.empty();
  }

  StreamSocket socket_;
  std::string received_;
};

class LoopbackListener {
 public:
  /// Listens on `port`, or on one that is free. `backlog` bounds the connections that wait for Accept.
  explicit LoopbackListener(std::uint16_t port = 0, int backlog = 16)
      : port_(socket_.Listen(port, backlog)) {}

  std::uint16_t port() const { return port_; }

  bool HasConnection(int limit_ms) const { return socket_.WaitReadable(limit_ms); }

  /// The next connection; throws when none comes within the limit.
  Peer Accept() const {
    if (!HasConnection(kLimitMs)) throw std::runtime_error("nobody connected");
    return Peer(socket_.Accept());
  }

  /// Connections that fill the queue, so that the next one is neither accepted nor refused.
  std::vector<StreamSocket> FillQueue() const {
    std::vector<StreamSocket> waiting;
    do {
      waiting.emplace_back().BeginConnect(port_);
    } while (waiting.back().WaitConnected(200));
    return waiting;
  }

  void Close() { socket_.Close(); }

 private:
  StreamSocket socket_;
  std::uint16_t port_;
};

/// A port of the loopback address on which nobody listens now.
inline std::uint16_t FreePort() {
  return LoopbackListener().port();
}

}  // namespace qlx::test
