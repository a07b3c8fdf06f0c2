// A tty as a serial port: raw while it is open, read and written without ever blocking.
#pragma once

#include <cerrno>
#include <chrono>

#include <termios.h>

#include "platform/linux/Descriptor.h"
#include "platform/serial_port.h"

namespace qlx::platform {

/// The line as a program finds it, given back when the port closes.
class RawLine {
 public:
  explicit RawLine(int tty) : tty_(tty), found_(tcgetattr(tty, &before_) == 0) {
    if (!found_) return;
    termios raw = before_;
    cfmakeraw(&raw);
    raw.c_cflag |= CLOCAL | CREAD;
    set_ = tcsetattr(tty_, TCSANOW, &raw) == 0;
  }
  RawLine(const RawLine&) = delete;
  RawLine& operator=(const RawLine&) = delete;
  ~RawLine() {
    if (set_) tcsetattr(tty_, TCSANOW, &before_);
  }

  bool set() const { return set_; }

 private:
  int tty_;
  termios before_{};
  bool found_;
  bool set_ = false;
};

/// Reads are waited for by `poll`, so the waits themselves take the bytes.
class Tty final : public SerialPort {
 public:
  /// `stop` is an event descriptor (eventfd) of the port's own.
  Tty(Descriptor tty, Descriptor stop, const SerialTimeouts& timeouts);
  Tty(const Tty&) = delete;
  Tty& operator=(const Tty&) = delete;
  ~Tty() override;

  bool raw() const { return line_.set(); }

  IoStart StartRead(std::span<std::uint8_t> buffer) override;
  IoWait WaitRead(std::chrono::milliseconds limit) override;
  std::optional<std::size_t> ReadResult() override;
  /// A read never fails here once it has started, so the one reason is that it has not ended.
  int ReadError() const override { return EINPROGRESS; }
  void CancelRead() override;
  IoStart StartWrite(std::span<const std::uint8_t> bytes) override;
  IoWait WaitWrite(std::chrono::milliseconds limit) override;
  bool WriteResult() override;
  void CancelWrite() override;
  void Stop() override;

 private:
  enum class Ready { kPort, kStop, kTimeout, kFailure };

  Ready Wait(short events, std::chrono::milliseconds limit) const;
  void TakeBytes();
  void GiveBytes();

  Descriptor tty_;
  Descriptor stop_;
  RawLine line_;
  SerialTimeouts timeouts_;

  std::span<std::uint8_t> buffer_;
  std::size_t read_ = 0;
  bool read_ended_ = false;
  bool gone_ = false;
  std::chrono::steady_clock::time_point first_byte_deadline_;

  std::span<const std::uint8_t> unwritten_;
  bool write_failed_ = false;
  bool write_cancelled_ = false;
};

}  // namespace qlx::platform
