// An open port with a reader thread: what every conversation with a device is made of.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <thread>

#include "platform/serial_port.h"

namespace qlx {

/// Most bytes of one received block.
inline constexpr std::size_t kReadBytes = 2048;

/// How a write ended. kAbandoned: stopped, or given up without a word.
enum class WriteEnd { kWritten, kFailed, kAbandoned };

/// When a read failed: one that cannot start ends the reader, one that fails while it is waited for does not.
enum class ReadFailure { kAtStart, kDuringWait };

/// What a link tells, always from its reader thread. Must return soon, and without waiting for the thread
/// that closes the link.
struct LinkReceiver {
  std::function<void(std::span<const std::uint8_t>)> received;  ///< one block, up to kReadBytes, maybe empty
  std::function<void(ReadFailure, int error)> failed;           ///< the system's number, 0 for a start
};

/// Opens, writes and closes on one thread and reads on its own.
class SerialLink {
 public:
  using OpenPort =
      std::function<platform::SerialOpening(const std::wstring& name, const platform::SerialTimeouts&)>;

  /// A write may wait a second for its device; `while_waiting`, when there is one, is called many times a
  /// second meanwhile, on the writing thread.
  SerialLink(OpenPort open_port, LinkReceiver receiver, std::function<void()> while_waiting = {});
  SerialLink(const SerialLink&) = delete;
  SerialLink& operator=(const SerialLink&) = delete;
  ~SerialLink() { Close(); }

  /// Opens the port and starts the reader; empty on success. Once in a link's life.
  std::optional<platform::SerialOpenError> Open(const std::wstring& name);

  /// Waits until the system has taken every byte, at most a second. kAbandoned when no port is open.
  WriteEnd Write(std::span<const std::uint8_t> bytes);

  /// Ends the reader and a pending write at once; both are left to end by themselves.
  void Stop();

  /// Stops, waits for the reader to end and closes the port. Nothing is received afterwards.
  void Close();

 private:
  platform::IoWait WaitForWrite();
  void Read();
  bool FinishRead();
  void Deliver(std::size_t count);

  OpenPort open_port_;
  LinkReceiver receiver_;
  std::function<void()> while_waiting_;
  std::unique_ptr<platform::SerialPort> port_;
  std::array<std::uint8_t, kReadBytes> buffer_{};
  std::thread reader_;
};

}  // namespace qlx
