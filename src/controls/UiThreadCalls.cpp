#include "controls/UiThreadCalls.h"

#include <utility>

namespace qlx {

UiThreadCalls::UiThreadCalls() {
  handler_.Bind(wxEVT_THREAD, [this](wxThreadEvent&) { ServeOne(); });
}

void UiThreadCalls::Close() {
  const std::lock_guard guard(lock_);
  closed_ = true;
  for (Request& request : requests_) request.done.set_value(false);
  requests_.clear();
}

bool UiThreadCalls::Run(std::function<void()> call) {
  std::future<bool> done;
  {
    const std::lock_guard guard(lock_);
    if (closed_) return false;
    done = requests_.emplace_back(Request{std::move(call), {}}).done.get_future();
    // Queued under the lock: the handler cannot go away between the check and this line.
    handler_.QueueEvent(new wxThreadEvent);
  }
  return done.get();
}

void UiThreadCalls::ServeOne() {
  Request request;
  {
    const std::lock_guard guard(lock_);
    if (requests_.empty()) return;
    request = std::move(requests_.front());
    requests_.pop_front();
  }
  request.call();
  request.done.set_value(true);
}

}  // namespace qlx
