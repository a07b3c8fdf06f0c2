#include "platform/service_control.h"

#include "platform/linux/systemd_manager.h"

namespace qlx::platform {

std::unique_ptr<ServiceManager> OpenServiceManager() {
  return OpenSystemdManager(kServiceCallLimit);
}

/// The manager decides by the call, not by the connection.
std::unique_ptr<ServiceManager> OpenServiceManagerToLook() {
  return OpenServiceManager();
}

}  // namespace qlx::platform
