// Kernel handles that close themselves.
#pragma once

#include <utility>

#include <windows.h>

namespace qlx::platform {

/// Owns one handle; null and INVALID_HANDLE_VALUE are none.
class Handle {
 public:
  explicit Handle(HANDLE handle = nullptr) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() { Close(); }

  explicit operator bool() const { return handle_ != nullptr; }
  HANDLE get() const { return handle_; }

  /// False when the system reports a failure only now.
  bool Close() {
    const HANDLE handle = std::exchange(handle_, nullptr);
    return !handle || CloseHandle(handle) != 0;
  }

 private:
  HANDLE handle_;
};

}  // namespace qlx::platform
