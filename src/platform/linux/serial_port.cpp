#include "platform/serial_port.h"

#include <utility>

#include <fcntl.h>
#include <sys/eventfd.h>

#include "platform/linux/Tty.h"
#include "platform/linux/path_text.h"
#include "platform/linux/port_directory.h"

namespace qlx::platform {
namespace {

/// No descriptor unless the port directory has a tty of that name; waits for no carrier.
Descriptor OpenTty(const std::wstring& name) {
  const std::string file = "MZP_" + PathBytes(name);
  if (file.find_first_of(std::string_view("/\0", 2)) != std::string::npos) return Descriptor(-1);
  const auto path = VirtualPortDirectory() / file;
  Descriptor tty(Retry([&] { return open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC); }));
  return tty && isatty(tty.number()) == 1 ? std::move(tty) : Descriptor(-1);
}

}  // namespace

SerialOpening OpenSerialPort(const std::wstring& name, const SerialTimeouts& timeouts) {
  Descriptor stop(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (!stop) return {nullptr, SerialOpenError::kStopEvent};
  Descriptor tty = OpenTty(name);
  if (!tty) return {nullptr, SerialOpenError::kDevice};
  auto port = std::make_unique<Tty>(std::move(tty), std::move(stop), timeouts);
  if (!port->raw()) return {nullptr, SerialOpenError::kTimeouts};
  return {std::move(port), {}};
}

}  // namespace qlx::platform
