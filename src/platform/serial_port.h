// A serial port with reads and writes that are started, waited for and stopped.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace qlx::platform {

/// What became of the start of a transfer.
enum class IoStart { kCompleted, kPending, kFailed };

/// What ended a wait for a pending transfer: the transfer itself (well or badly, as its result tells), the
/// port's stop signal, the time-out of the wait, or a failure of the wait.
enum class IoWait { kEnded, kStopped, kTimedOut, kFailed };

struct SerialTimeouts {
  std::chrono::milliseconds interval;          ///< a longer gap between two bytes ends a read
  std::chrono::milliseconds total_multiplier;  ///< times the bytes asked for, plus the constant:
  std::chrono::milliseconds total_constant;    ///< the most that a read waits for its first byte
};

/// One open port; closes itself. One thread reads and one writes; Stop may come from any. After a start that
/// answered kPending the buffer must stay until the transfer has ended or was cancelled.
class SerialPort {
 public:
  virtual ~SerialPort() = default;

  /// A read ends at the time-outs or with a full buffer.
  virtual IoStart StartRead(std::span<std::uint8_t> buffer) = 0;
  virtual IoWait WaitRead(std::chrono::milliseconds limit) = 0;
  /// Bytes read, without waiting; empty when the read failed or has not ended.
  virtual std::optional<std::size_t> ReadResult() = 0;
  /// The system's error number for an empty ReadResult.
  virtual int ReadError() const = 0;
  virtual void CancelRead() = 0;

  /// A write ends once the system has taken every byte.
  virtual IoStart StartWrite(std::span<const std::uint8_t> bytes) = 0;
  virtual IoWait WaitWrite(std::chrono::milliseconds limit) = 0;
  /// Whether every byte was taken, without waiting.
  virtual bool WriteResult() = 0;
  virtual void CancelWrite() = 0;

  /// From now on every wait ends with kStopped, a wait that goes on included.
  virtual void Stop() = 0;
};

/// The step at which a port could not be opened.
enum class SerialOpenError { kReadEvent, kWriteEvent, kStopEvent, kDevice, kTimeouts };

/// A port, or the reason why there is none.
struct SerialOpening {
  std::unique_ptr<SerialPort> port;
  SerialOpenError error{};  ///< counts without a port only
};

/// Opens the port of the name "COM<n>", shared with others, without changing its speed. Every byte passes
/// unaltered.
SerialOpening OpenSerialPort(const std::wstring& name, const SerialTimeouts& timeouts);

}  // namespace qlx::platform
