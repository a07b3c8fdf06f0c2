// The restart of the suite's two services on a worker thread.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "config/Message.h"
#include "platform/service_control.h"

namespace qlx {

/// The picture beside a restart message.
enum class RestartIcon { kNone, kInformation };

/// When the worker sends progress 2: the main window wants it always, the COM Ports page after a success
/// only.
enum class RestartEnd { kAlways, kOnSuccess };

/// Who is told of a restart. Every call comes from the worker's thread, or out of ServiceRestart::Start when
/// the system had none for it, and returns once it has been handled.
class RestartTarget {
 public:
  virtual ~RestartTarget() = default;
  /// 0 started, 1 work finished (close the progress window), 2 restart over.
  virtual void OnRestartProgress(int state) = 0;
  /// Shows a box and returns when the user has closed it.
  virtual void ShowRestartMessage(const Message& message, RestartIcon icon) = 0;
};

/// One restart at a time: framework service stopped, logging service stopped, then started in the other
/// order. The wait for a service to stop has no limit, so the worker may run for as long as a service hangs;
/// it holds no lock and blocks no signal meanwhile, and ending the process ends it.
class ServiceRestart {
 public:
  using OpenManager = std::function<std::unique_ptr<platform::ServiceManager>()>;

  /// `target` must outlive this object. `open_manager` is called on the worker's thread.
  ServiceRestart(OpenManager open_manager, RestartTarget& target, RestartEnd end);
  ServiceRestart(const ServiceRestart&) = delete;
  ServiceRestart& operator=(const ServiceRestart&) = delete;
  /// Waits for a running worker; must therefore not happen within one of the worker's reports.
  ~ServiceRestart();

  /// Starts the worker. False, and nothing done, while one still runs. Call it from one thread. When the
  /// system has no thread to give, its error is told as that of the first step: this thread could not wait
  /// for a service that hangs.
  bool Start();
  /// True until the last report has returned.
  bool running() const { return running_; }

 private:
  /// `steps` tells whether all of them succeeded.
  void Work(const std::function<bool()>& steps);
  bool Restart();
  void TellFailure(const wchar_t* what, int error, const wchar_t* outcome);

  OpenManager open_manager_;
  RestartTarget& target_;
  RestartEnd end_;
  std::atomic<bool> running_ = false;
  std::thread worker_;
};

}  // namespace qlx
