#include "tests/robustness/given_port.h"

#include <winsock2.h>

namespace qlx::test {
namespace {

u_short given_port = 0;

/// The system's function, past the linker's name for it below.
auto SystemBind() {
  auto* found = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ws2_32.dll"), "bind"));
  return reinterpret_cast<decltype(&bind)>(found);
}

int WSAAPI Bind(SOCKET socket, const sockaddr* wanted, int size) {
  sockaddr_in address = *reinterpret_cast<const sockaddr_in*>(wanted);
  if (address.sin_port == 0) address.sin_port = given_port;
  return SystemBind()(socket, reinterpret_cast<const sockaddr*>(&address), size);
}

}  // namespace

// Through this the calls go that the linker would resolve by the system's library.
extern decltype(&Bind) own_bind asm("__imp_bind");
decltype(&Bind) own_bind = Bind;

void GivePort(std::uint16_t port) {
  given_port = htons(port);
}

}  // namespace qlx::test
