#include "platform/service_control.h"

#include "platform/linux/systemd_manager.h"

namespace qlx::platform {

std::unique_ptr<ServiceManager> OpenServiceManager() {
  return OpenSystemdManager(kServiceCallLimit);
}

}  // namespace qlx::platform
