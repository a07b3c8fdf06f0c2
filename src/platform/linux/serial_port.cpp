#include "platform/serial_port.h"

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <termios.h>

#include "platform/linux/Descriptor.h"
#include "platform/linux/path_text.h"
#include "platform/linux/port_directory.h"

namespace qlx::platform {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

/// Two bytes of one block may lie further apart than the interval time-out when the machine is busy.
constexpr milliseconds kGapSlack{2};

enum class Ready { kPort, kStop, kTimeout, kFailure };

milliseconds Until(Clock::time_point deadline) {
  return std::max(std::chrono::ceil<milliseconds>(deadline - Clock::now()), milliseconds(0));
}

/// The line as a program finds it, given back when the port closes.
class RawLine {
 public:
  explicit RawLine(int tty) : tty_(tty), found_(tcgetattr(tty, &before_) == 0) {
    if (!found_) return;
    termios raw = before_;
    cfmakeraw(&raw);
    raw.c_cflag |= CLOCAL | CREAD;
    raw.c_cc[VMIN] = 0;
    raw.c_cc[VTIME] = 0;
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

class Tty final : public SerialPort {
 public:
  Tty(Descriptor tty, Descriptor stop, const SerialTimeouts& timeouts)
      : tty_(std::move(tty)), stop_(std::move(stop)), line_(tty_.number()), timeouts_(timeouts) {}
  Tty(const Tty&) = delete;
  Tty& operator=(const Tty&) = delete;
  ~Tty() override {
    // Closing waits for what the device does not take, for up to half a minute.
    if (write_cancelled_) tcflush(tty_.number(), TCOFLUSH);
  }

  bool raw() const { return line_.set(); }

  IoStart StartRead(std::span<std::uint8_t> buffer) override {
    if (gone_) return IoStart::kFailed;
    buffer_ = buffer;
    read_ = 0;
    read_ended_ = false;
    first_byte_deadline_ =
        Clock::now() + timeouts_.total_multiplier * buffer.size() + timeouts_.total_constant;
    return IoStart::kPending;
  }

  IoWait WaitRead(milliseconds limit) override {
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

  std::optional<std::size_t> ReadResult() override {
    return read_ended_ ? std::optional(read_) : std::nullopt;
  }

  void CancelRead() override { buffer_ = {}; }

  IoStart StartWrite(std::span<const std::uint8_t> bytes) override {
    unwritten_ = bytes;
    write_failed_ = false;
    GiveBytes();
    if (write_failed_) return IoStart::kFailed;
    return unwritten_.empty() ? IoStart::kCompleted : IoStart::kPending;
  }

  IoWait WaitWrite(milliseconds limit) override {
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

  bool WriteResult() override { return unwritten_.empty() && !write_failed_; }

  void CancelWrite() override {
    unwritten_ = {};
    write_cancelled_ = true;
  }

  void Stop() override { eventfd_write(stop_.number(), 1); }

 private:
  /// The stop signal wins over a port that is ready as well.
  Ready Wait(short events, milliseconds limit) const {
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
  void TakeBytes() {
    const auto rest = buffer_.subspan(read_);
    const ssize_t count = Retry([&] { return read(tty_.number(), rest.data(), rest.size()); });
    if (count > 0) {
      read_ += static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EAGAIN) {
      gone_ = true;
    }
    read_ended_ = gone_ || read_ == buffer_.size();
  }

  void GiveBytes() {
    const ssize_t count = Retry([&] { return write(tty_.number(), unwritten_.data(), unwritten_.size()); });
    if (count >= 0) {
      unwritten_ = unwritten_.subspan(static_cast<std::size_t>(count));
    } else if (errno != EAGAIN) {
      write_failed_ = true;
    }
  }

  Descriptor tty_;
  Descriptor stop_;
  RawLine line_;
  SerialTimeouts timeouts_;

  std::span<std::uint8_t> buffer_;
  std::size_t read_ = 0;
  bool read_ended_ = false;
  bool gone_ = false;
  Clock::time_point first_byte_deadline_;

  std::span<const std::uint8_t> unwritten_;
  bool write_failed_ = false;
  bool write_cancelled_ = false;
};

/// No descriptor unless the port directory has a tty of that name; waits for no carrier.
Descriptor OpenTty(const std::wstring& name) {
  const std::string file = "MZP_" + PathBytes(name);
  if (file.find_first_of(std::string_view("/\0", 2)) != std::string::npos) return Descriptor(-1);
  const auto path = VirtualPortDirectory() / file;
  Descriptor tty(Retry([&] { return open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC); }));
  return tty && isatty(tty.number()) == 1 ? std::move(tty) : Descriptor(-1);
}

}  // namespace

SerialOpening OpenSerialPort(const std::wstring& name, const SerialTimeouts& timeouts) {
  Descriptor stop(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (!stop) return {nullptr, SerialOpenError::kStopEvent};
  Descriptor tty = OpenTty(name);
  if (!tty) return {nullptr, SerialOpenError::kDevice};
  auto port = std::make_unique<Tty>(std::move(tty), std::move(stop), timeouts);
  if (!port->raw()) return {nullptr, SerialOpenError::kTimeouts};
  return {std::move(port), {}};
}

}  // namespace qlx::platform
