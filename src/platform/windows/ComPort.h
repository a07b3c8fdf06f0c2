// A COM port by overlapped I/O.
#pragma once

#include "platform/serial_port.h"
#include "platform/windows/Handle.h"
#include "platform/windows/Transfer.h"

namespace qlx::platform {

/// The events of one port, each manual-reset and not signalled at first.
struct ComPortEvents {
  Handle read;
  Handle write;
  Handle stop;
};

class ComPort final : public SerialPort {
 public:
  ComPort(Handle device, ComPortEvents events)
      : device_(std::move(device)),
        stop_(std::move(events.stop)),
        read_(device_.get(), std::move(events.read)),
        write_(device_.get(), std::move(events.write)) {}

  /// The same values bound a write, as one time-out for the whole of it.
  bool SetTimeouts(const SerialTimeouts& timeouts) const;

  /// Fails once a read has told that the device is gone.
  IoStart StartRead(std::span<std::uint8_t> buffer) override;
  IoWait WaitRead(std::chrono::milliseconds limit) override { return read_.Wait(stop_.get(), limit); }
  std::optional<std::size_t> ReadResult() override;
  int ReadError() const override { return static_cast<int>(read_.error()); }
  void CancelRead() override { read_.Cancel(); }
  IoStart StartWrite(std::span<const std::uint8_t> bytes) override;
  IoWait WaitWrite(std::chrono::milliseconds limit) override { return write_.Wait(stop_.get(), limit); }
  bool WriteResult() override { return write_.Result() == write_size_; }
  void CancelWrite() override { write_.Cancel(); }
  void Stop() override { SetEvent(stop_.get()); }

 private:
  Handle device_;
  Handle stop_;
  Transfer read_;  // the transfers end before their device closes
  Transfer write_;
  DWORD write_size_ = 0;
  bool gone_ = false;
};

}  // namespace qlx::platform
