#include "sim/VirtualPort.h"

#include <array>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

namespace qlx::sim {
namespace {

using platform::Descriptor;

constexpr int kFloodLinesAtOnce = 64;

int Checked(int result) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), "pty");
  return result;
}

}  // namespace

/// The pty of a plugged port. The simulator keeps the tty open itself, so that its own end lives on between
/// two programs that open it.
struct VirtualPort::Line {
  Line(EventLoop& loop, std::function<void()> emptied)
      : master(Checked(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))),
        kept(OpenTty()),
        outbox(loop, master.number(), write, kMostWaiting, std::move(emptied)) {
    termios raw{};
    Checked(tcgetattr(kept.number(), &raw));
    cfmakeraw(&raw);
    Checked(tcsetattr(kept.number(), TCSANOW, &raw));
  }

  Descriptor OpenTty() {
    Checked(grantpt(master.number()));
    Checked(unlockpt(master.number()));
    if (ptsname_r(master.number(), name.data(), name.size()) != 0) Checked(-1);
    return Descriptor(Checked(open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC)));
  }

  std::array<char, 64> name{};
  Descriptor master;
  Descriptor kept;
  Outbox outbox;
  EventSource readable;
  bool flooding = false;
  unsigned flood_number = 0;
  EventSource next_flood;
};

VirtualPort::VirtualPort(EventLoop& loop, std::filesystem::path link, Receive receive)
    : loop_(loop), link_(std::move(link)), receive_(std::move(receive)) {}

VirtualPort::~VirtualPort() {
  Unplug();
}

void VirtualPort::Plug() {
  if (line_) return;
  auto line = std::make_unique<Line>(loop_, [this] { GoOnFlooding(); });
  line->readable = loop_.OnReadable(line->master.number(), [this] { ReceiveSome(); });
  std::filesystem::remove(link_);
  std::filesystem::create_symlink(line->name.data(), link_);
  line_ = std::move(line);
}

void VirtualPort::Unplug() {
  if (!line_) return;
  std::error_code gone;
  std::filesystem::remove(link_, gone);
  line_.reset();
}

bool VirtualPort::Send(std::string_view bytes) {
  return line_ && line_->outbox.Send(bytes);
}

void VirtualPort::Flood(bool on) {
  if (!line_) return;
  line_->flooding = on;
  line_->next_flood = {};
  if (on && line_->outbox.empty()) GoOnFlooding();
}

void VirtualPort::Quiet() {
  Flood(false);
  if (line_) line_->outbox.Discard();
}

void VirtualPort::ReceiveSome() {
  std::array<char, 4096> bytes;
  const ssize_t count = read(line_->master.number(), bytes.data(), bytes.size());
  if (count > 0) receive_({bytes.data(), static_cast<std::size_t>(count)});
}

/// One block at a time, so that everything else has its turn.
void VirtualPort::GoOnFlooding() {
  if (!line_->flooding) return;
  std::string block;
  for (int i = 0; i < kFloodLinesAtOnce; ++i) {
    std::array<char, 32> text;
    const int length = snprintf(text.data(), text.size(), "flood %08u\r\n", line_->flood_number++);
    block.append(text.data(), static_cast<std::size_t>(length));
  }
  line_->outbox.Send(block);
  if (line_->outbox.empty()) {
    line_->next_flood = loop_.After(std::chrono::milliseconds(0), [this] { GoOnFlooding(); });
  }
}

}  // namespace qlx::sim
