// A real TCP service on the loopback address, as badly behaved as a test wants it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace qlx::test {

/// A descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int value) : value_(value) {}
  Descriptor(Descriptor&& other) noexcept : value_(other.value_) { other.value_ = -1; }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() { Close(); }

  int get() const { return value_; }
  void Close() {
    if (value_ >= 0) close(value_);
    value_ = -1;
  }

 private:
  int value_;
};

/// How long a test waits for what must happen before it counts as failed.
inline constexpr int kLimitMs = 20000;

/// One accepted connection.
class Peer {
 public:
  explicit Peer(int descriptor) : descriptor_(descriptor) {}

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

  void Close() { descriptor_.Close(); }

  /// Ends the connection as a crashed service does: the client gets a reset.
  void Reset() {
    const linger at_once{1, 0};
    setsockopt(descriptor_.get(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    Close();
  }

 private:
  bool ReadMore() {
    pollfd wait{descriptor_.get(), POLLIN, 0};
    if (poll(&wait, 1, kLimitMs) != 1) return false;
    char buffer[65536];
    const ssize_t count = read(descriptor_.get(), buffer, sizeof buffer);
    if (count > 0) received_.append(buffer, static_cast<std::size_t>(count));
    return count > 0;
  }

  Descriptor descriptor_;
  std::string received_;
};

class LoopbackListener {
 public:
  /// Listens on `port`, or on one that is free. `backlog` bounds the connections that wait for Accept.
  explicit LoopbackListener(std::uint16_t port = 0, int backlog = 16)
      : descriptor_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const int on = 1;
    setsockopt(descriptor_.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    // Small buffers, so that a peer that does not read is full after a moment; accepted sockets inherit it.
    const int bytes = 4096;
    setsockopt(descriptor_.get(), SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
    sockaddr_in address = Address(port);
    socklen_t size = sizeof address;
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    if (bind(descriptor_.get(), plain, size) != 0 || listen(descriptor_.get(), backlog) != 0 ||
        getsockname(descriptor_.get(), plain, &size) != 0)
      throw std::runtime_error("cannot listen on the loopback address");
    port_ = ntohs(address.sin_port);
  }

  std::uint16_t port() const { return port_; }

  bool HasConnection(int limit_ms) const {
    pollfd wait{descriptor_.get(), POLLIN, 0};
    return poll(&wait, 1, limit_ms) == 1;
  }

  /// The next connection; throws when none comes within the limit.
  Peer Accept() const {
    if (!HasConnection(kLimitMs)) throw std::runtime_error("nobody connected");
    return Peer(accept4(descriptor_.get(), nullptr, nullptr, SOCK_CLOEXEC));
  }

  void Close() { descriptor_.Close(); }

  static sockaddr_in Address(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
  }

 private:
  Descriptor descriptor_;
  std::uint16_t port_ = 0;
};

/// A port of the loopback address on which nobody listens now.
inline std::uint16_t FreePort() {
  return LoopbackListener().port();
}

}  // namespace qlx::test
