// One virtual COM port: a pty, and the link by which programs find its tty.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/linux/Descriptor.h"
#include "sim/EventLoop.h"
#include "sim/Outbox.h"

namespace qlx::sim {

/// Alters no byte in either direction. Belongs to its loop's thread.
class VirtualPort {
 public:
  /// What a program that never reads can leave waiting, beside what the system keeps for it.
  static constexpr std::size_t kMostWaiting = std::size_t{1} << 20;

  using Receive = std::function<void(std::string_view bytes)>;

  /// Not there before Plug. `link` is replaced when it exists.
  VirtualPort(EventLoop& loop, std::filesystem::path link, Receive receive);
  VirtualPort(const VirtualPort&) = delete;
  VirtualPort& operator=(const VirtualPort&) = delete;
  ~VirtualPort();

  /// A new tty under the link, unless there is one. Throws std::system_error when the system has none left.
  void Plug();
  /// The link goes, and whoever has the tty open has it hung up.
  void Unplug();
  bool plugged() const { return line_ != nullptr; }

  /// False when `bytes` were dropped: nobody reads, or the port is unplugged.
  bool Send(std::string_view bytes);
  /// From now on sends numbered lines as fast as they are taken, or sends no more of them.
  void Flood(bool on);
  /// Ends a flood and forgets what waits.
  void Quiet();

 private:
  struct Line;

  void ReceiveSome();
  void GoOnFlooding();

  EventLoop& loop_;
  std::filesystem::path link_;
  Receive receive_;
  std::unique_ptr<Line> line_;
};

}  // namespace qlx::sim
