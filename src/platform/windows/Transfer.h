// Overlapped reads or writes of one file, one after the other.
#pragma once

#include <chrono>
#include <optional>
#include <utility>

#include <windows.h>

#include "platform/serial_port.h"
#include "platform/windows/Handle.h"

namespace qlx::platform {

/// One thread starts transfers, waits for them and cancels them. A transfer that is still pending when the
/// next one starts, or when the object goes, is cancelled first.
class Transfer {
 public:
  /// `file` is lent and open for overlapped I/O; `event` is a manual-reset event of the transfer's own.
  Transfer(HANDLE file, Handle event) : file_(file), event_(std::move(event)) {}
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;
  ~Transfer() { Cancel(); }

  /// Resets the event and lets `call` start to read or write the file with the OVERLAPPED that it is given.
  template <typename Call>
  IoStart Start(Call call) {
    Prepare();
    return Started(call(&overlapped_));
  }

  /// The stop event wins over a transfer that has ended as well.
  IoWait Wait(HANDLE stop, std::chrono::milliseconds limit) const;

  /// Bytes transferred, without waiting; empty when the transfer failed or has not ended.
  std::optional<DWORD> Result();
  /// The system's error number for an empty result.
  DWORD error() const { return error_; }

  /// Returns when the system has let go of the buffer.
  void Cancel();

 private:
  void Prepare();
  IoStart Started(BOOL completed);

  HANDLE file_;
  Handle event_;
  OVERLAPPED overlapped_{};
  bool pending_ = false;
  DWORD error_ = ERROR_SUCCESS;
};

}  // namespace qlx::platform
