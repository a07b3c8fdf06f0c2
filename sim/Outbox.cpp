#include "sim/Outbox.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>

namespace qlx::sim {

Outbox::Outbox(EventLoop& loop, int descriptor, Write write, std::size_t most_waiting,
               std::function<void()> emptied)
    : loop_(loop),
      descriptor_(fcntl(descriptor, F_DUPFD_CLOEXEC, 0)),
      write_(write),
      most_waiting_(most_waiting),
      emptied_(std::move(emptied)) {
  if (!descriptor_) throw std::system_error(errno, std::generic_category(), "outbox");
}

bool Outbox::Send(std::string_view bytes) {
  if (waiting_.size() + bytes.size() > most_waiting_) return false;
  const bool idle = waiting_.empty();
  waiting_ += bytes;
  if (!idle) return true;
  WriteSome();
  if (!waiting_.empty()) writable_ = loop_.OnWritable(descriptor_.number(), [this] { Flush(); });
  return true;
}

void Outbox::Discard() {
  waiting_.clear();
  writable_ = {};
}

void Outbox::Flush() {
  WriteSome();
  if (!waiting_.empty()) return;
  writable_ = {};
  const auto emptied = emptied_;
  emptied();
}

void Outbox::WriteSome() {
  const ssize_t count = write_(descriptor_.number(), waiting_.data(), waiting_.size());
  if (count >= 0) {
    waiting_.erase(0, static_cast<std::size_t>(count));
  } else if (errno != EAGAIN && errno != EINTR) {
    // The other side has gone, which its owner learns by reading.
    waiting_.clear();
  }
}

}  // namespace qlx::sim
