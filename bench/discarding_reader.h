// A reader that throws records away on the other core, and the barest way to send them to it.
#pragma once

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <arpa/inet.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

namespace qlx::bench {

inline void PinTo(unsigned core) {
  cpu_set_t cores;
  CPU_ZERO(&cores);
  CPU_SET(core, &cores);
  sched_setaffinity(0, sizeof cores, &cores);
}

[[noreturn]] inline void Fail(const char* what) {
  std::perror(what);
  std::exit(2);
}

/// Throws away what every connection sends; each has a process of its own on the second core. It wakes up for
/// large pieces only: waking it for every record costs the sender more than the record and differs from round
/// to round.
[[noreturn]] inline void Discard(int listener) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  PinTo(1);
  for (;;) {
    const int peer = accept(listener, nullptr, nullptr);
    if (fork() == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      static std::array<char, 1 << 18> buffer;
      constexpr int kPiece = buffer.size() / 2;
      setsockopt(peer, SOL_SOCKET, SO_RCVLOWAT, &kPiece, sizeof kPiece);
      while (read(peer, buffer.data(), buffer.size()) > 0) {
      }
      _exit(0);
    }
    close(peer);
  }
}

/// The port of a reader that runs in a process of its own on the second core.
inline std::uint16_t StartReader() {
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* plain = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener, plain, size) != 0 || listen(listener, 16) != 0) Fail("listen");
  if (getsockname(listener, plain, &size) != 0) Fail("getsockname");
  if (fork() == 0) Discard(listener);
  close(listener);
  return ntohs(address.sin_port);
}

/// Set once, before the first contender connects.
inline std::uint16_t reader_port = 0;

/// A socket that nobody sits between: select, then send.
class BareSocket {
 public:
  BareSocket() : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(reader_port);
    if (connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) Fail("connect");
  }
  BareSocket(const BareSocket&) = delete;
  BareSocket& operator=(const BareSocket&) = delete;
  ~BareSocket() { close(socket_); }

  void Send(std::string_view record) const {
    fd_set writable;
    FD_ZERO(&writable);
    FD_SET(socket_, &writable);
    timeval limit{0, 3000000};
    if (select(socket_ + 1, nullptr, &writable, nullptr, &limit) != 1) Fail("select");
    if (send(socket_, record.data(), record.size(), MSG_NOSIGNAL) < 0) Fail("send");
  }

 private:
  int socket_;
};

}  // namespace qlx::bench
