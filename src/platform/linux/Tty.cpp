#include "platform/linux/Tty.h"

#include <algorithm>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>

namespace qlx::platform {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

/// Two bytes of one block may lie further apart than the interval time-out when the machine is busy.
constexpr milliseconds kGapSlack{2};

milliseconds Until(Clock::time_point deadline) {
  return std::max(std::chrono::ceil<milliseconds>(deadline - Clock::now()), milliseconds(0));
}

}  // namespace

Tty::Tty(Descriptor tty, Descriptor stop, const SerialTimeouts& timeouts)
    : tty_(std::move(tty)), stop_(std::move(stop)), line_(tty_.number()), timeouts_(timeouts) {}

Tty::~Tty() {
  // Closing waits for what the device does not take, for up to half a minute.
  if (write_cancelled_) tcflush(tty_.number(), TCOFLUSH);
}

IoStart Tty::StartRead(std::span<std::uint8_t> buffer) {
  if (gone_) return IoStart::kFailed;
  buffer_ = buffer;
  read_ = 0;
  read_ended_ = false;
  first_byte_deadline_ = Clock::now() + timeouts_.total_multiplier * buffer.size() + timeouts_.total_constant;
  return IoStart::kPending;
}

IoWait Tty::WaitRead(milliseconds limit) {
  const Clock::time_point wait_deadline = Clock::now() + limit;
  while (!read_ended_) {
    const milliseconds pause =
        read_ > 0 ? timeouts_.interval + kGapSlack : Until(std::min(wait_deadline, first_byte_deadline_));
    switch (Wait(POLLIN, pause)) {
      case Ready::kPort:
        TakeBytes();
        break;
      case Ready::kStop:
        return IoWait::kStopped;
      case Ready::kTimeout:
        if (read_ == 0 && Clock::now() < first_byte_deadline_) return IoWait::kTimedOut;
        read_ended_ = true;
        break;
      case Ready::kFailure:
        return IoWait::kFailed;
    }
  }
  return IoWait::kEnded;
}

std::optional<std::size_t> Tty::ReadResult() {
  return read_ended_ ? std::optional(read_) : std::nullopt;
}

void Tty::CancelRead() {
  buffer_ = {};
}

IoStart Tty::StartWrite(std::span<const std::uint8_t> bytes) {
  unwritten_ = bytes;
  write_failed_ = false;
  GiveBytes();
  if (write_failed_) return IoStart::kFailed;
  return unwritten_.empty() ? IoStart::kCompleted : IoStart::kPending;
}

IoWait Tty::WaitWrite(milliseconds limit) {
  const Clock::time_point deadline = Clock::now() + limit;
  while (!unwritten_.empty() && !write_failed_) {
    switch (Wait(POLLOUT, Until(deadline))) {
      case Ready::kPort:
        GiveBytes();
        break;
      case Ready::kStop:
        return IoWait::kStopped;
      case Ready::kTimeout:
        return IoWait::kTimedOut;
      case Ready::kFailure:
        return IoWait::kFailed;
    }
  }
  return IoWait::kEnded;
}

bool Tty::WriteResult() {
  return unwritten_.empty() && !write_failed_;
}

void Tty::CancelWrite() {
  unwritten_ = {};
  write_cancelled_ = true;
}

void Tty::Stop() {
  eventfd_write(stop_.number(), 1);
}

/// The stop signal wins over a port that is ready as well.
Tty::Ready Tty::Wait(short events, milliseconds limit) const {
  const Clock::time_point deadline = Clock::now() + limit;
  pollfd polled[] = {{stop_.number(), POLLIN, 0}, {tty_.number(), events, 0}};
  int ready = 0;
  do {
    ready = poll(polled, std::size(polled), static_cast<int>(Until(deadline).count()));
  } while (ready < 0 && errno == EINTR);
  if (ready < 0) return Ready::kFailure;
  if (polled[0].revents != 0) return Ready::kStop;
  return ready > 0 ? Ready::kPort : Ready::kTimeout;
}

/// A tty that has vanished answers with an error or, once hung up, with no byte at all. The read then ends
/// with what came before, and the next one cannot start.
void Tty::TakeBytes() {
  const auto rest = buffer_.subspan(read_);
  const ssize_t count = Retry([&] { return read(tty_.number(), rest.data(), rest.size()); });
  if (count > 0) {
    read_ += static_cast<std::size_t>(count);
  } else if (count == 0 || errno != EAGAIN) {
    gone_ = true;
  }
  read_ended_ = gone_ || read_ == buffer_.size();
}

void Tty::GiveBytes() {
  const ssize_t count = Retry([&] { return write(tty_.number(), unwritten_.data(), unwritten_.size()); });
  if (count >= 0) {
    unwritten_ = unwritten_.subspan(static_cast<std::size_t>(count));
  } else if (errno != EAGAIN) {
    write_failed_ = true;
  }
}

}  // namespace qlx::platform
