// The one way by which a worker thread has something done on the user-interface thread.
#pragma once

#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

#include <wx/event.h>

namespace qlx {

/// Lives on the user-interface thread, with the window that a worker reports to. Close it before waiting for
/// the worker to end: a worker that still waits for this thread is then let go.
class UiThreadCalls {
 public:
  UiThreadCalls();
  UiThreadCalls(const UiThreadCalls&) = delete;
  UiThreadCalls& operator=(const UiThreadCalls&) = delete;
  ~UiThreadCalls() { Close(); }

  /// Lets every waiting worker go without its call having run, and every later one at once.
  void Close();

  /// For a worker: runs `call` on the user-interface thread, in the order of the requests, and returns when
  /// it is over. False when Close came first. Work that has to be done on the user-interface thread itself
  /// has it run at once.
  bool Run(std::function<void()> call);

  /// From any thread: has `call` run on the user-interface thread, in the order of the requests, and does not
  /// wait for it. Nothing after Close.
  void Post(std::function<void()> call) { Enqueue(std::move(call)); }

 private:
  struct Request {
    std::function<void()> call;
    std::promise<bool> done;
  };

  /// Becomes true once the call has run, false when Close came first.
  std::future<bool> Enqueue(std::function<void()> call);
  void ServeOne();

  wxEvtHandler handler_;
  std::mutex lock_;
  bool closed_ = false;
  std::deque<Request> requests_;
};

/// Does `work` on a thread of its own, which the caller joins. When the system has no thread to give it is
/// done here, before the return of a thread that is not joinable: better a window that stands still than
/// nothing done.
std::thread StartWorker(std::function<void()> work);

}  // namespace qlx
