#include "platform/tcp_socket.h"

#include <new>

#include <winsock2.h>

namespace qlx::platform {
namespace {

constexpr WORD kVersion = MAKEWORD(2, 2);

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

timeval Timeval(std::chrono::microseconds limit) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(limit);
  return {static_cast<long>(seconds.count()), static_cast<long>((limit - seconds).count())};
}

WaitEnd EndOf(int selected) {
  if (selected == 0) return WaitEnd::kTimedOut;
  return selected == SOCKET_ERROR ? WaitEnd::kFailed : WaitEnd::kReady;
}

class Winsock final : public TcpSocket {
 public:
  Winsock() = default;
  Winsock(const Winsock&) = delete;
  Winsock& operator=(const Winsock&) = delete;
  ~Winsock() override { Close(); }

  bool Start() override {
    WSADATA granted{};
    if (WSAStartup(kVersion, &granted) != 0) return false;
    if (granted.wVersion == kVersion) return true;
    WSACleanup();
    return false;
  }
  void Stop() override { WSACleanup(); }

  std::optional<std::uint32_t> Resolve(const std::string& host) override {
    const hostent* found = gethostbyname(host.c_str());
    if (found == nullptr || found->h_addrtype != AF_INET) return std::nullopt;
    return ntohl(reinterpret_cast<const in_addr*>(found->h_addr_list[0])->s_addr);
  }

  bool Create() override {
    Close();
    constexpr DWORD kFlags = WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT;
    socket_ = WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0, kFlags);
    // Non-blocking, so that only the waits below, which have a limit, can hold the caller.
    u_long on = 1;
    return socket_ != INVALID_SOCKET && ioctlsocket(socket_, static_cast<long>(FIONBIO), &on) == 0;
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
    fd_set writable = Alone();
    timeval time = Timeval(limit);
    return EndOf(select(0, nullptr, &writable, nullptr, &time));
  }

  bool Send(std::string_view bytes) override {
    return send(socket_, bytes.data(), static_cast<int>(bytes.size()), 0) != SOCKET_ERROR;
  }

  void Close() override {
    if (socket_ != INVALID_SOCKET) closesocket(socket_);
    socket_ = INVALID_SOCKET;
  }

 private:
  bool Reach(const sockaddr_in& peer, std::chrono::milliseconds limit) {
    if (connect(socket_, Plain(peer), sizeof peer) == 0) return true;
    if (WSAGetLastError() != WSAEWOULDBLOCK) return false;
    // A refusal makes the socket exceptional and never writable.
    fd_set connected = Alone();
    fd_set refused = Alone();
    timeval time = Timeval(limit);
    return EndOf(select(0, nullptr, &connected, &refused, &time)) == WaitEnd::kReady &&
           FD_ISSET(socket_, &connected) != 0;
  }

  /// Where nobody listens, the port that the system chose for us can be the one that we call: the socket then
  /// talks to itself and keeps the port from its service. Closing it leaves the port free at once.
  bool MeetsItself(const sockaddr_in& peer) const {
    sockaddr_in own{};
    int size = sizeof own;
    getsockname(socket_, reinterpret_cast<sockaddr*>(&own), &size);
    if (own.sin_port != peer.sin_port || own.sin_addr.s_addr != peer.sin_addr.s_addr) return false;
    const linger at_once{1, 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&at_once), sizeof at_once);
    return true;
  }

  fd_set Alone() const { return {1, {socket_}}; }

  SOCKET socket_ = INVALID_SOCKET;
};

}  // namespace

std::unique_ptr<TcpSocket> MakeTcpSocket() {
  return std::unique_ptr<TcpSocket>(new (std::nothrow) Winsock);
}

}  // namespace qlx::platform
