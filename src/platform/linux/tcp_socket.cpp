#include "platform/tcp_socket.h"

#include <algorithm>
#include <cerrno>
#include <new>

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace qlx::platform {
namespace {

using std::chrono::steady_clock;

constexpr int kNone = -1;

sockaddr_in Address(std::uint32_t address, std::uint16_t port) {
  sockaddr_in result{};
  result.sin_family = AF_INET;
  result.sin_addr.s_addr = htonl(address);
  result.sin_port = htons(port);
  return result;
}

const sockaddr* Plain(const sockaddr_in& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

/// A machine whose resolver does not know "localhost" still has its loopback address.
std::optional<std::uint32_t> WithoutResolver(const std::string& host) {
  if (host != "localhost") return std::nullopt;
  return INADDR_LOOPBACK;
}

/// Whole milliseconds until `end`, rounded up, as poll takes them.
int Remaining(steady_clock::time_point end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - steady_clock::now());
  return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

class BsdSocket final : public TcpSocket {
 public:
  BsdSocket() = default;
  BsdSocket(const BsdSocket&) = delete;
  BsdSocket& operator=(const BsdSocket&) = delete;
  ~BsdSocket() override { Close(); }

  // The kernel's sockets need neither start nor stop.
  bool Start() override { return true; }
  void Stop() override {}

  std::optional<std::uint32_t> Resolve(const std::string& host) override {
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &wanted, &found) != 0) return WithoutResolver(host);
    const auto* first = reinterpret_cast<const sockaddr_in*>(found->ai_addr);
    const std::uint32_t address = ntohl(first->sin_addr.s_addr);
    freeaddrinfo(found);
    return address;
  }

  bool Create() override {
    Close();
    // Non-blocking, so that only the waits below, which have a limit, can hold the caller.
    socket_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_TCP);
    return socket_ != kNone;
  }

  bool BindToAny() override {
    const sockaddr_in any = Address(INADDR_ANY, 0);
    return bind(socket_, Plain(any), sizeof any) == 0;
  }

  bool Connect(std::uint32_t address, std::uint16_t port, std::chrono::milliseconds limit) override {
    const sockaddr_in peer = Address(address, port);
    return Reach(peer, limit) && !MeetsItself(peer);
  }

  WaitEnd WaitWritable(std::chrono::microseconds limit) override {
    const auto end = steady_clock::now() + limit;
    pollfd wait{socket_, POLLOUT, 0};
    int ready = 0;
    do {
      ready = poll(&wait, 1, Remaining(end));
    } while (ready < 0 && errno == EINTR);
    if (ready == 0) return WaitEnd::kTimedOut;
    return ready > 0 && (wait.revents & POLLNVAL) == 0 ? WaitEnd::kReady : WaitEnd::kFailed;
  }

  bool Send(std::string_view bytes) override {
    ssize_t taken = 0;
    do {
      taken = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    } while (taken < 0 && errno == EINTR);
    return taken >= 0;
  }

  void Close() override {
    if (socket_ != kNone) close(socket_);
    socket_ = kNone;
  }

 private:
  bool Reach(const sockaddr_in& peer, std::chrono::milliseconds limit) {
    if (connect(socket_, Plain(peer), sizeof peer) == 0) return true;
    if (errno != EINPROGRESS || WaitWritable(limit) != WaitEnd::kReady) return false;
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(socket_, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
  }

  /// Where nobody listens, the port that the system chose for us can be the one that we call: the socket then
  /// talks to itself and keeps the port from its service. Closing it leaves the port free at once.
  bool MeetsItself(const sockaddr_in& peer) const {
    sockaddr_in own{};
    socklen_t size = sizeof own;
    getsockname(socket_, reinterpret_cast<sockaddr*>(&own), &size);
    if (own.sin_port != peer.sin_port || own.sin_addr.s_addr != peer.sin_addr.s_addr) return false;
    const linger at_once{1, 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    return true;
  }

  int socket_ = kNone;
};

}  // namespace

std::unique_ptr<TcpSocket> MakeTcpSocket() {
  return std::unique_ptr<TcpSocket>(new (std::nothrow) BsdSocket);
}

}  // namespace qlx::platform
