// The demo's session on a virtual port, with the test as the device.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "VirtualPort.h"
#include "demo/SerialSession.h"
#include "tests/support/Wakes.h"

namespace qlx {

class Conversation : public ::testing::Test {
 protected:
  /// Takes what there is, until `count` bytes have been received.
  void AwaitBytes(std::size_t count) {
    while (received_.size() < count) AwaitEvent();
  }
  /// Takes what there is, until `line` was shown.
  void AwaitLine(const std::wstring& line) {
    while (std::ranges::find(lines_, line) == lines_.end()) AwaitEvent();
  }

  void AwaitEvent() {
    wakes_.Await();
    Collect();
  }

  void Collect() {
    for (const SessionEvent& event : session_.Take(1 << 20)) {
      if (const auto* line = std::get_if<std::wstring>(&event)) {
        lines_.push_back(*line);
      } else {
        const auto& block = std::get<std::vector<std::uint8_t>>(event);
        received_.append(block.begin(), block.end());
      }
    }
  }

  testing::PortDirectory directory_;
  testing::VirtualPort device_{directory_};
  testing::Wakes wakes_;
  std::vector<std::wstring> lines_;
  std::string received_;
  SerialSession session_{platform::OpenSerialPort, [this] { wakes_.Add(); }};
};

inline std::string Whole(const DemoCommand& command) {
  std::string bytes;
  for (const std::string_view chunk : command.chunks) bytes += chunk;
  return bytes;
}

}  // namespace qlx
