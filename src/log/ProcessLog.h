// The locks, the filter and the life of the one logger of a process.
#pragma once

#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>

#include "log/Logger.h"
#include "log/printf_format.h"

namespace qlx {

/// Not created, then created by the first call, then ended for good. A process's own is never destroyed, so a
/// thread that logs while the process exits meets a lock that still stands.
/// Every function may be called from any thread. Locks are taken in the order dump, message, instance.
class ProcessLog {
 public:
  using CreateLogger = std::unique_ptr<Logger> (*)();

  explicit ProcessLog(CreateLogger create) : create_(create) {}

  /// False when a message of this module and level is not logged. Takes no lock. Before the first message
  /// everything passes, since the settings are not known yet.
  bool Passes(std::uint32_t module, std::uint32_t level) const {
    const std::uint64_t filter = filter_.load(std::memory_order_acquire);
    const auto threshold = static_cast<std::uint32_t>(filter);
    const auto mask = static_cast<std::uint32_t>(filter >> 32);
    return (level - 1 < threshold && (module & mask) != 0) || filter == kUnknown;
  }

  /// Logs one message; text beyond 1023 bytes is cut. Throws std::bad_alloc when the logger cannot be made.
  void Message(std::uint32_t module, std::uint32_t level, const char* format, std::va_list arguments)
      QLX_PRINTF(4, 0);

  /// Logs a caption and the `length` bytes at `data`, 16 a row; nothing when `length` is 0.
  void HexDump(std::uint32_t module, std::uint32_t level, const void* data, std::uint32_t length,
               const char* format, std::va_list arguments) QLX_PRINTF(6, 0);

  /// Closes the connection and ends the logger; a later call is silent.
  void End();

 private:
  static constexpr std::uint64_t kUnknown = ~std::uint64_t{0};
  static constexpr std::uint64_t kNothing = 0;

  bool PassesOnceCreated(std::uint32_t module, std::uint32_t level);
  void Write(std::uint32_t module, std::uint32_t level, std::string_view text);

  CreateLogger create_;
  std::atomic<std::uint64_t> filter_ = kUnknown;  // level threshold, module mask above it
  std::mutex dump_lock_;
  std::mutex message_lock_;
  Logger* logger_ = nullptr;  // owned; freed by End
};

}  // namespace qlx
