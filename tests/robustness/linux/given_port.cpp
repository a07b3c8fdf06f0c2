#include "tests/robustness/given_port.h"

#include <algorithm>
#include <cstring>

#include <netinet/in.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

in_port_t given_port = 0;

}  // namespace

// In front of the C library's, which gives such a port only once in ten thousand times.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int bind(int socket, const sockaddr* wanted, socklen_t size) noexcept {
  sockaddr_in address{};
  std::memcpy(&address, wanted, std::min<std::size_t>(size, sizeof address));
  if (address.sin_port == 0) address.sin_port = given_port;
  return static_cast<int>(syscall(SYS_bind, socket, &address, size));
}

void qlx::test::GivePort(std::uint16_t port) {
  given_port = htons(port);
}
