// A virtual port on a real pty, and the device's end of it.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

namespace qlx::testing {

/// A port directory of its own for the life of the object, which the environment names.
class PortDirectory {
 public:
  PortDirectory() {
    std::string name = std::filesystem::temp_directory_path() / "qlx-ports-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
    path_ = name;
    setenv("QUILLON_PORT_DIR", path_.c_str(), 1);
  }
  PortDirectory(const PortDirectory&) = delete;
  PortDirectory& operator=(const PortDirectory&) = delete;
  ~PortDirectory() {
    unsetenv("QUILLON_PORT_DIR");
    std::filesystem::remove_all(path_);
  }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

class VirtualPort {
 public:
  /// The port is there at once, as a tty that echoes and edits lines as every new one does.
  explicit VirtualPort(const PortDirectory& directory, const std::string& name = "COM5")
      : link_(directory.path() / ("MZP_" + name)) {
    char tty[64];
    if (openpty(&device_, &kept_, tty, nullptr, nullptr) != 0) throw std::runtime_error("no pty");
    fcntl(device_, F_SETFL, O_RDWR | O_NONBLOCK);
    std::filesystem::create_symlink(tty, link_);
  }
  VirtualPort(const VirtualPort&) = delete;
  VirtualPort& operator=(const VirtualPort&) = delete;
  ~VirtualPort() { Unplug(); }

  /// The device goes, and its link with it.
  void Unplug() {
    if (device_ < 0) return;
    std::filesystem::remove(link_);
    close(kept_);
    close(device_);
    device_ = -1;
  }

  /// Sends every byte, waiting for the tool where it must.
  void Send(std::string_view bytes) const {
    while (!bytes.empty()) {
      const auto sent = SendSome(bytes);
      if (!sent) throw std::runtime_error("the device is unplugged");
      bytes.remove_prefix(*sent);
    }
  }

  /// Sends what the port takes within a moment; nothing once the device is unplugged.
  std::optional<std::size_t> SendSome(std::string_view bytes) const {
    pollfd polled = {device_, POLLOUT, 0};
    if (poll(&polled, 1, 10) <= 0) return device_ < 0 ? std::nullopt : std::optional<std::size_t>(0);
    const ssize_t count = write(device_, bytes.data(), bytes.size());
    if (count < 0) return errno == EAGAIN ? std::optional<std::size_t>(0) : std::nullopt;
    return static_cast<std::size_t>(count);
  }

  /// The next bytes from the tool: `size` of them, or fewer when nothing more comes for `limit_ms`.
  std::string Receive(std::size_t size, int limit_ms = 10000) const {
    std::string bytes;
    while (bytes.size() < size) {
      pollfd polled = {device_, POLLIN, 0};
      if (poll(&polled, 1, limit_ms) <= 0) break;
      char block[4096];
      const ssize_t count = read(device_, block, std::min(sizeof block, size - bytes.size()));
      if (count <= 0) break;
      bytes.append(block, static_cast<std::size_t>(count));
    }
    return bytes;
  }

  termios Line() const {
    termios line{};
    tcgetattr(kept_, &line);
    return line;
  }
  void SetLine(const termios& line) const { tcsetattr(kept_, TCSANOW, &line); }

 private:
  std::filesystem::path link_;
  int device_ = -1;
  int kept_ = -1;  ///< the tty's end, so that the device's end stays open between two tools
};

}  // namespace qlx::testing
