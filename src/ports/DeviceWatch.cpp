#include "ports/DeviceWatch.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <stop_token>
#include <utility>

namespace qlx {
namespace {

/// False when it was cut short because the watch is to end.
bool Pause(const std::stop_token& stop, std::chrono::milliseconds length) {
  std::mutex lock;
  std::condition_variable_any never;
  std::unique_lock guard(lock);
  never.wait_for(guard, stop, length, [] { return false; });
  return !stop.stop_requested();
}

}  // namespace

DeviceWatch::DeviceWatch(Look look, Report report, std::chrono::milliseconds pause)
    : thread_([look = std::move(look), report = std::move(report), pause](const std::stop_token& stop) {
        std::optional<PresentDevices> last;
        do {
          PresentDevices seen = look();
          if (seen == last || stop.stop_requested()) continue;
          report(seen);
          last = std::move(seen);
        } while (Pause(stop, pause));
      }) {}

}  // namespace qlx
