#include "platform/linux/port_directory.h"

#include <cstdlib>

namespace qlx::platform {

std::filesystem::path VirtualPortDirectory() {
  const char* chosen = std::getenv("QUILLON_PORT_DIR");
  return chosen != nullptr && *chosen != '\0' ? chosen : "/dev/quillon";
}

}  // namespace qlx::platform
