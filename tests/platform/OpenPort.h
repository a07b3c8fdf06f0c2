// A port that was opened on a virtual one, with the device's end of it.
#pragma once

#include <array>
#include <numeric>
#include <optional>
#include <string>

#include <gmock/gmock.h>

#include "VirtualPort.h"
#include "platform/serial_port.h"

namespace qlx::platform {

inline constexpr SerialTimeouts kTimeouts = {std::chrono::milliseconds(1), std::chrono::milliseconds(1),
                                             std::chrono::milliseconds(1)};
inline constexpr std::chrono::milliseconds kLong{10000};

inline std::string AllBytes() {
  std::string bytes(256, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  return bytes;
}

class OpenPort : public ::testing::Test {
 protected:
  OpenPort() : port_(OpenSerialPort(L"COM5", kTimeouts).port) {}

  /// One read of at most `size` bytes; nothing when it failed.
  std::optional<std::string> Read(std::size_t size = 2048) {
    const IoStart start = port_->StartRead(std::span(buffer_).first(size));
    if (start == IoStart::kFailed) return std::nullopt;
    if (start == IoStart::kPending && port_->WaitRead(kLong) != IoWait::kEnded) return std::nullopt;
    const auto count = port_->ReadResult();
    if (!count) return std::nullopt;
    return std::string(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(*count));
  }

  IoStart StartWrite(const std::string& bytes) {
    bytes_ = bytes;
    return port_->StartWrite({reinterpret_cast<const std::uint8_t*>(bytes_.data()), bytes_.size()});
  }

  testing::PortDirectory directory_;
  testing::VirtualPort device_{directory_};
  std::unique_ptr<SerialPort> port_;
  std::array<std::uint8_t, 2048> buffer_{};
  std::string bytes_;
};

}  // namespace qlx::platform
