#include "tests/support/StreamSocket.h"

#include <stdexcept>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace qlx::test {
namespace {

int Descriptor(std::intptr_t handle) {
  return static_cast<int>(handle);
}

sockaddr_in Loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  return address;
}

bool Wait(std::intptr_t handle, short event, int limit_ms) {
  pollfd wait{Descriptor(handle), event, 0};
  return poll(&wait, 1, limit_ms) == 1;
}

}  // namespace

StreamSocket::StreamSocket() : handle_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  if (handle_ == kNone) throw std::runtime_error("no socket");
}

std::uint16_t StreamSocket::Listen(std::uint16_t port, int backlog) {
  const int listener = Descriptor(handle_);
  const int on = 1;
  setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  // Small buffers, so that a peer that does not read is full after a moment; accepted sockets inherit it.
  const int bytes = 4096;
  setsockopt(listener, SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
  sockaddr_in address = Loopback(port);
  socklen_t size = sizeof address;
  auto* plain = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener, plain, size) != 0 || listen(listener, backlog) != 0 ||
      getsockname(listener, plain, &size) != 0)
    throw std::runtime_error("cannot listen on the loopback address");
  return ntohs(address.sin_port);
}

StreamSocket StreamSocket::Accept() const {
  return StreamSocket(Handle{accept4(Descriptor(handle_), nullptr, nullptr, SOCK_CLOEXEC)});
}

void StreamSocket::BeginConnect(std::uint16_t port) {
  fcntl(Descriptor(handle_), F_SETFL, O_NONBLOCK);
  const sockaddr_in address = Loopback(port);
  // In progress or refused: the wait says which.
  (void)connect(Descriptor(handle_), reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

bool StreamSocket::WaitReadable(int limit_ms) const {
  return Wait(handle_, POLLIN, limit_ms);
}

bool StreamSocket::WaitConnected(int limit_ms) const {
  return Wait(handle_, POLLOUT, limit_ms);
}

std::string StreamSocket::Read() {
  std::string bytes(65536, '\0');
  const ssize_t count = read(Descriptor(handle_), bytes.data(), bytes.size());
  bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return bytes;
}

void StreamSocket::Close() {
  if (handle_ != kNone) close(Descriptor(handle_));
  handle_ = kNone;
}

void StreamSocket::Reset() {
  const linger at_once{1, 0};
  setsockopt(Descriptor(handle_), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
  Close();
}

}  // namespace qlx::test
