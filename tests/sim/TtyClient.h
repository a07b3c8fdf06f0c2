// A program that has a virtual port open, and what a process has open at all.
#pragma once

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <poll.h>
#include <sys/types.h>
#include <termios.h>
#include <unistd.h>

namespace qlx::sim {

class TtyClient {
 public:
  explicit TtyClient(const std::filesystem::path& link)
      : tty_(open(link.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {}
  TtyClient(const TtyClient&) = delete;
  TtyClient& operator=(const TtyClient&) = delete;
  ~TtyClient() {
    if (tty_ >= 0) close(tty_);
  }

  bool opened() const { return tty_ >= 0; }

  /// `size` bytes, or those that came when no more follow within ten seconds or the tty is hung up.
  std::string Read(std::size_t size) const {
    std::string bytes;
    while (bytes.size() < size && Await(POLLIN)) {
      std::array<char, 65536> block;
      const ssize_t count = read(tty_, block.data(), std::min(block.size(), size - bytes.size()));
      if (count > 0) bytes.append(block.data(), static_cast<std::size_t>(count));
      if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) break;
    }
    return bytes;
  }

  /// What there is to read now.
  std::string ReadNow() const {
    std::array<char, 4096> block;
    const ssize_t count = read(tty_, block.data(), block.size());
    return {block.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }

  /// True when the system took all of `bytes`.
  bool Write(std::string_view bytes) const {
    while (!bytes.empty() && Await(POLLOUT)) {
      const ssize_t count = write(tty_, bytes.data(), bytes.size());
      if (count < 0 && errno != EAGAIN) return false;
      if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return bytes.empty();
  }

  /// True once the tty is hung up; false when that does not happen within ten seconds.
  bool AwaitHangUp() const {
    pollfd polled = {tty_, 0, 0};
    return poll(&polled, 1, 10000) > 0 && (polled.revents & POLLHUP) != 0;
  }

  termios Line() const {
    termios line{};
    tcgetattr(tty_, &line);
    return line;
  }

 private:
  bool Await(short events) const {
    pollfd polled = {tty_, events, 0};
    return poll(&polled, 1, 10000) > 0;
  }

  int tty_;
};

/// The descriptors that `process`, such as "self", has open.
inline std::ptrdiff_t OpenDescriptors(const std::string& process = "self") {
  return std::distance(std::filesystem::directory_iterator("/proc/" + process + "/fd"), {});
}

}  // namespace qlx::sim
