#include "sim/socket_address.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include <sys/socket.h>

namespace qlx::sim {

sockaddr_un SocketAddress(const std::filesystem::path& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.native().size() >= std::size(address.sun_path)) {
    throw std::runtime_error("the path " + path.native() + " is too long for a socket");
  }
  std::ranges::copy(path.native(), address.sun_path);
  return address;
}

}  // namespace qlx::sim
