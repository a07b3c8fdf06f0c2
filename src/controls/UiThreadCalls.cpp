#include "controls/UiThreadCalls.h"

#include <system_error>

#include <wx/thread.h>

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
  if (wxIsMainThread()) {
    {
      const std::lock_guard guard(lock_);
      if (closed_) return false;
    }
    call();
    return true;
  }
  return Enqueue(std::move(call)).get();
}

std::future<bool> UiThreadCalls::Enqueue(std::function<void()> call) {
  const std::lock_guard guard(lock_);
  Request request{std::move(call), {}};
  std::future<bool> done = request.done.get_future();
  if (closed_) {
    request.done.set_value(false);
    return done;
  }
  requests_.push_back(std::move(request));
  // Queued under the lock: the handler cannot go away between the check and this line.
  handler_.QueueEvent(new wxThreadEvent);
  return done;
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

std::thread StartWorker(std::function<void()> work) {
  try {
    return std::thread(work);
  } catch (const std::system_error&) {
    work();
    return {};
  }
}

}  // namespace qlx
