// A plain TCP client on this machine.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace qlx::sim {

class TcpClient {
 public:
  explicit TcpClient(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    connected_ = connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  TcpClient(const TcpClient&) = delete;
  TcpClient& operator=(const TcpClient&) = delete;
  ~TcpClient() { close(socket_); }

  bool connected() const { return connected_; }

  /// True when the system took all of `bytes`.
  bool Send(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t count = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (count <= 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
  }

  /// Waits until the other side closes.
  void AwaitEnd() const {
    char byte = 0;
    while (recv(socket_, &byte, 1, 0) > 0) {
    }
  }

 private:
  int socket_;
  bool connected_ = false;
};

/// A port that nothing listens on, below those that the system gives to clients, so that no client of a test
/// running beside this one gets it meanwhile.
inline std::uint16_t FreePort() {
  std::random_device random;
  std::uniform_int_distribution<int> ports(20000, 32000);
  while (true) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(ports(random)));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int holder = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool free = bind(holder, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(holder);
    if (free) return ntohs(address.sin_port);
  }
}

}  // namespace qlx::sim
