#include "platform/serial_port.h"

#include <utility>

#include "platform/windows/ComPort.h"

namespace qlx::platform {
namespace {

Handle ManualResetEvent() {
  return Handle(CreateEventW(nullptr, TRUE, FALSE, nullptr));
}

/// A name never leads out of the system's devices, to a file or another computer.
Handle OpenDevice(const std::wstring& name) {
  if (name.find_first_of(std::wstring_view(L"\\/:\0", 4)) != std::wstring::npos) return Handle();
  const std::wstring path = L"\\\\.\\" + name;
  return Handle(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                            nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr));
}

}  // namespace

SerialOpening OpenSerialPort(const std::wstring& name, const SerialTimeouts& timeouts) {
  ComPortEvents events{ManualResetEvent(), Handle(), Handle()};
  if (!events.read) return {nullptr, SerialOpenError::kReadEvent};
  events.write = ManualResetEvent();
  if (!events.write) return {nullptr, SerialOpenError::kWriteEvent};
  events.stop = ManualResetEvent();
  if (!events.stop) return {nullptr, SerialOpenError::kStopEvent};
  Handle device = OpenDevice(name);
  if (!device) return {nullptr, SerialOpenError::kDevice};
  auto port = std::make_unique<ComPort>(std::move(device), std::move(events));
  if (!port->SetTimeouts(timeouts)) return {nullptr, SerialOpenError::kTimeouts};
  return {std::move(port), {}};
}

}  // namespace qlx::platform
