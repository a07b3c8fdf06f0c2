// The device interfaces that the suite's virtual port driver has registered.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace qlx::platform {

/// The interface class of the virtual ports.
class DeviceInterfaces {
 public:
  virtual ~DeviceInterfaces() = default;

  /// The paths of the interfaces that are present now, in the system's order; none when the class cannot be
  /// opened. A path ends in "\MZP_COM" and the port's number.
  virtual std::vector<std::wstring> PresentPaths() const = 0;
};

/// Reads its place from the environment, once.
std::unique_ptr<DeviceInterfaces> VirtualPortInterfaces();

}  // namespace qlx::platform
