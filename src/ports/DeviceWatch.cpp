#include "ports/DeviceWatch.h"

#include <optional>
#include <system_error>
#include <utility>

namespace qlx {

DeviceWatch::DeviceWatch(Look look, Report report, std::chrono::milliseconds pause)
    : look_(std::move(look)), report_(std::move(report)), pause_(pause) {
  try {
    thread_ = std::thread([this] { Watch(); });
  } catch (const std::system_error&) {
    report_(look_());
  }
}

DeviceWatch::~DeviceWatch() {
  {
    const std::lock_guard guard(lock_);
    ending_ = true;
  }
  end_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void DeviceWatch::Watch() {
  std::optional<PresentDevices> last;
  do {
    PresentDevices seen = look_();
    if (seen == last || Ending()) continue;
    report_(seen);
    last = std::move(seen);
  } while (Pause());
}

bool DeviceWatch::Ending() {
  const std::lock_guard guard(lock_);
  return ending_;
}

bool DeviceWatch::Pause() {
  std::unique_lock guard(lock_);
  return !end_.wait_for(guard, pause_, [this] { return ending_; });
}

}  // namespace qlx
