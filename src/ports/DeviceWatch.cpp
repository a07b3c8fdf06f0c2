#include "ports/DeviceWatch.h"

#include <optional>
#include <utility>

namespace qlx {

DeviceWatch::DeviceWatch(Look look, Report report, std::chrono::milliseconds pause)
    : thread_([this, look = std::move(look), report = std::move(report), pause] {
        std::optional<PresentDevices> last;
        do {
          PresentDevices seen = look();
          if (seen == last || Ending()) continue;
          report(seen);
          last = std::move(seen);
        } while (Pause(pause));
      }) {}

DeviceWatch::~DeviceWatch() {
  {
    const std::lock_guard guard(lock_);
    ending_ = true;
  }
  end_.notify_one();
  thread_.join();
}

bool DeviceWatch::Ending() {
  const std::lock_guard guard(lock_);
  return ending_;
}

bool DeviceWatch::Pause(std::chrono::milliseconds length) {
  std::unique_lock guard(lock_);
  return !end_.wait_for(guard, length, [this] { return ending_; });
}

}  // namespace qlx
