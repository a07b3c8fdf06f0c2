#include "platform/device_interfaces.h"

#include "platform/windows/present_interfaces.h"
#include "platform/windows/virtual_port_class.h"

namespace qlx::platform {
namespace {

class RegisteredInterfaces final : public DeviceInterfaces {
 public:
  std::vector<std::wstring> PresentPaths() const override {
    std::vector<std::wstring> paths;
    // What a walk found before it broke off is there all the same.
    WalkPresentInterfaces(kVirtualPortClass, [&](const std::wstring& path) { paths.push_back(path); });
    return paths;
  }
};

}  // namespace

std::unique_ptr<DeviceInterfaces> VirtualPortInterfaces() {
  return std::make_unique<RegisteredInterfaces>();
}

}  // namespace qlx::platform
