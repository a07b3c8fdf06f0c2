// Tells when ports or USB devices are plugged in or unplugged.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "ports/UsbDevices.h"

namespace qlx {

struct PresentDevices {
  std::vector<std::wstring> ports{};
  std::vector<UsbDevice> devices{};
  bool operator==(const PresentDevices&) const = default;
};

/// Looks again and again, on a thread of its own: a look may block. A system's own notice of a change comes
/// before the ports' links and the devices' texts are there, and from other places on every system; looking
/// needs nothing but what finds the devices anyway, and the lists are short.
class DeviceWatch {
 public:
  using Look = std::function<PresentDevices()>;
  using Report = std::function<void(const PresentDevices&)>;

  static constexpr std::chrono::milliseconds kPause{1000};

  /// Looks at once and after every `pause`. `report` gets what the first look saw and every other view after
  /// it. Both are called on the watch's thread, or just once, here, when the system has none to give.
  DeviceWatch(Look look, Report report, std::chrono::milliseconds pause = kPause);
  DeviceWatch(const DeviceWatch&) = delete;
  DeviceWatch& operator=(const DeviceWatch&) = delete;
  /// Waits for a look or report that has begun; none begins any more.
  ~DeviceWatch();

 private:
  void Watch();
  bool Ending();
  /// False when it was cut short because the watch is to end.
  bool Pause();

  const Look look_;
  const Report report_;
  const std::chrono::milliseconds pause_;
  std::mutex lock_;
  std::condition_variable end_;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace qlx
