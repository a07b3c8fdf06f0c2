#include "log/ProcessLog.h"

#include <string>

#include "log/HexRows.h"
#include "log/LogText.h"
#include "log/levels.h"

namespace qlx {

void ProcessLog::Message(std::uint32_t module, std::uint32_t level, const char* format,
                         std::va_list arguments) {
  if (!PassesOnceCreated(module, level)) return;
  Write(module, level, LogText(format, arguments).view());
}

void ProcessLog::HexDump(std::uint32_t module, std::uint32_t level, const void* data, std::uint32_t length,
                         const char* format, std::va_list arguments) {
  if (!PassesOnceCreated(module, level) || length == 0) return;
  LogText caption(format, arguments);
  caption.Append(" (" + std::to_string(static_cast<int>(length)) + " bytes)");
  const std::lock_guard dump(dump_lock_);
  Write(module, level, caption.view());
  HexRows rows({static_cast<const unsigned char*>(data), length});
  while (!rows.done()) Write(module | kContinuation, level, rows.Next());
}

void ProcessLog::End() {
  const std::lock_guard message(message_lock_);
  filter_.store(kNothing, std::memory_order_release);
  delete logger_;
  logger_ = nullptr;
}

bool ProcessLog::PassesOnceCreated(std::uint32_t module, std::uint32_t level) {
  if (filter_.load(std::memory_order_acquire) == kUnknown) {
    const std::lock_guard message(message_lock_);
    if (filter_.load(std::memory_order_relaxed) == kUnknown) {
      logger_ = create_().release();
      const LogSettings& settings = logger_->settings();
      filter_.store(std::uint64_t{settings.modules} << 32 | settings.level, std::memory_order_release);
    }
  }
  return Passes(module, level);
}

void ProcessLog::Write(std::uint32_t module, std::uint32_t level, std::string_view text) {
  const std::lock_guard message(message_lock_);
  if (logger_ != nullptr) logger_->Write(module, level, text);
}

}  // namespace qlx
