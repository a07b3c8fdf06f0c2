// What every simulated device is: bytes in, bytes and words out, without a port.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qlx::sim {

/// What a device does on something that it received.
struct Reaction {
  std::string answer;              ///< bytes to the program
  std::vector<std::string> later;  ///< further bursts, each after a pause
  std::vector<std::string> lines;  ///< to be said
};

class Device {
 public:
  Device() = default;
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;
  virtual ~Device() = default;

  /// `bytes` are as they came: a command may be spread over several calls.
  virtual Reaction Receive(std::string_view /*bytes*/) { return {}; }
};

}  // namespace qlx::sim
