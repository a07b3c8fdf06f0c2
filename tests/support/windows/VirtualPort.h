// A virtual port on a pty of the machine below Wine, and the device's end of it. Programs run under
// virtual_ports.py.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <winsock2.h>

namespace qlx::testing {

/// Where the ports are: here the system's one list of devices.
class PortDirectory {};

/// One thread at a time.
class VirtualPort {
 public:
  /// The port is there at once.
  explicit VirtualPort(const PortDirectory& directory, const std::string& name = "COM5");
  VirtualPort(const VirtualPort&) = delete;
  VirtualPort& operator=(const VirtualPort&) = delete;
  ~VirtualPort();

  /// The device goes, and its name with it.
  void Unplug();

  /// Sends every byte, waiting for the tool where it must.
  void Send(std::string_view bytes) const;

  /// Sends what the port takes within a moment; nothing once the device is unplugged.
  std::optional<std::size_t> SendSome(std::string_view bytes) const;

  /// The next bytes from the tool: `size` of them, or fewer when nothing more comes for `limit_ms`.
  std::string Receive(std::size_t size, int limit_ms = 10000) const;

 private:
  /// Sends `request` and answers the number that comes back.
  std::size_t Ask(const std::string& request) const;
  std::string Read(std::size_t size) const;

  SOCKET connection_;
  bool plugged_ = true;
};

}  // namespace qlx::testing
