#include "platform/windows/ComPort.h"

#include <algorithm>
#include <iterator>

namespace qlx::platform {
namespace {

/// What a driver answers with when its device was unplugged.
constexpr DWORD kGone[] = {ERROR_NOT_READY,   ERROR_BAD_COMMAND,          ERROR_GEN_FAILURE,
                           ERROR_BROKEN_PIPE, ERROR_DEVICE_NOT_CONNECTED, ERROR_DEVICE_REMOVED};

DWORD Milliseconds(std::chrono::milliseconds time) {
  return static_cast<DWORD>(time.count());
}

}  // namespace

bool ComPort::SetTimeouts(const SerialTimeouts& timeouts) const {
  COMMTIMEOUTS set{};
  set.ReadIntervalTimeout = Milliseconds(timeouts.interval);
  set.ReadTotalTimeoutMultiplier = Milliseconds(timeouts.total_multiplier);
  set.ReadTotalTimeoutConstant = Milliseconds(timeouts.total_constant);
  set.WriteTotalTimeoutMultiplier = Milliseconds(timeouts.total_multiplier);
  set.WriteTotalTimeoutConstant = Milliseconds(timeouts.total_constant);
  return SetCommTimeouts(device_.get(), &set) != FALSE;
}

IoStart ComPort::StartRead(std::span<std::uint8_t> buffer) {
  if (gone_) return IoStart::kFailed;
  return read_.Start([&](OVERLAPPED* overlapped) {
    return ReadFile(device_.get(), buffer.data(), static_cast<DWORD>(buffer.size()), nullptr, overlapped);
  });
}

/// Some drivers let reads start for ever on a device that is gone, and fail each: a reader would go in
/// circles.
std::optional<std::size_t> ComPort::ReadResult() {
  const auto count = read_.Result();
  gone_ = !count && std::ranges::find(kGone, read_.error()) != std::end(kGone);
  return count;
}

/// A write that ends at once for its time-out has not taken every byte.
IoStart ComPort::StartWrite(std::span<const std::uint8_t> bytes) {
  write_size_ = static_cast<DWORD>(bytes.size());
  const IoStart start = write_.Start([&](OVERLAPPED* overlapped) {
    return WriteFile(device_.get(), bytes.data(), write_size_, nullptr, overlapped);
  });
  return start == IoStart::kCompleted && !WriteResult() ? IoStart::kFailed : start;
}

}  // namespace qlx::platform
