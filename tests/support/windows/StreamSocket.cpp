#include "tests/support/StreamSocket.h"

#include <stdexcept>

#include <winsock2.h>

namespace qlx::test {
namespace {

SOCKET Native(std::intptr_t handle) {
  return static_cast<SOCKET>(handle);
}

sockaddr_in Loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  return address;
}

timeval Timeval(int limit_ms) {
  return {limit_ms / 1000, limit_ms % 1000 * 1000};
}

/// The socket library, started as long as the test runs.
void StartLibrary() {
  static const int failure = [] {
    WSADATA granted{};
    return WSAStartup(MAKEWORD(2, 2), &granted);
  }();
  if (failure != 0) throw std::runtime_error("no socket library");
}

SOCKET Open() {
  StartLibrary();
  constexpr DWORD kFlags = WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT;
  return WSASocketW(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0, kFlags);
}

}  // namespace

StreamSocket::StreamSocket() : handle_(static_cast<Handle>(Open())) {
  if (handle_ == kNone) throw std::runtime_error("no socket");
}

std::uint16_t StreamSocket::Listen(std::uint16_t port, int backlog) {
  const SOCKET listener = Native(handle_);
  // Small buffers, so that a peer that does not read is full after a moment; accepted sockets inherit it.
  const int bytes = 4096;
  setsockopt(listener, SOL_SOCKET, SO_RCVBUF, reinterpret_cast<const char*>(&bytes), sizeof bytes);
  sockaddr_in address = Loopback(port);
  int size = sizeof address;
  auto* plain = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener, plain, size) != 0 || listen(listener, backlog) != 0 ||
      getsockname(listener, plain, &size) != 0)
    throw std::runtime_error("cannot listen on the loopback address");
  return ntohs(address.sin_port);
}

StreamSocket StreamSocket::Accept() const {
  const SOCKET accepted = accept(Native(handle_), nullptr, nullptr);
  SetHandleInformation(reinterpret_cast<HANDLE>(accepted), HANDLE_FLAG_INHERIT, 0);
  return StreamSocket(static_cast<Handle>(accepted));
}

void StreamSocket::BeginConnect(std::uint16_t port) {
  u_long on = 1;
  ioctlsocket(Native(handle_), static_cast<long>(FIONBIO), &on);
  const sockaddr_in address = Loopback(port);
  // In progress or refused: the wait says which.
  (void)connect(Native(handle_), reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

bool StreamSocket::WaitReadable(int limit_ms) const {
  fd_set readable{1, {Native(handle_)}};
  timeval limit = Timeval(limit_ms);
  return select(0, &readable, nullptr, nullptr, &limit) == 1;
}

bool StreamSocket::WaitConnected(int limit_ms) const {
  fd_set connected{1, {Native(handle_)}};
  fd_set refused = connected;
  timeval limit = Timeval(limit_ms);
  return select(0, nullptr, &connected, &refused, &limit) > 0;
}

std::string StreamSocket::Read() {
  std::string bytes(65536, '\0');
  const int count = recv(Native(handle_), bytes.data(), static_cast<int>(bytes.size()), 0);
  bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return bytes;
}

void StreamSocket::Close() {
  if (handle_ != kNone) closesocket(Native(handle_));
  handle_ = kNone;
}

void StreamSocket::Reset() {
  const linger at_once{1, 0};
  setsockopt(Native(handle_), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&at_once), sizeof at_once);
  Close();
}

}  // namespace qlx::test
