// The system's service manager, reduced to what a restart and the status line need.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

namespace qlx::platform {

enum class ServiceState { kStopped, kPending, kRunning };

/// One service by name. Used from one thread; each call blocks until the manager has answered or its own
/// limit is over. A service that could not be opened answers every call with the error that opening met.
class Service {
 public:
  virtual ~Service() = default;
  /// Empty when the query failed or the service is unknown.
  virtual std::optional<ServiceState> QueryState() = 0;
  /// Asks the service to stop and does not wait for it. Empty on success, else the system's error number.
  virtual std::optional<int> RequestStop() = 0;
  /// Empty when the service is starting or running afterwards, else the system's error number.
  virtual std::optional<int> Start() = 0;
};

/// A connection to the manager; services opened from it must not outlive it.
class ServiceManager {
 public:
  virtual ~ServiceManager() = default;
  /// Never null: see Service.
  virtual std::unique_ptr<Service> Open(std::string_view name) = 0;
};

/// The local machine's manager. Never null: without a connection every service answers with its error.
std::unique_ptr<ServiceManager> OpenServiceManager();

/// The same for QueryState alone, which whoever may not control services may ask for too.
std::unique_ptr<ServiceManager> OpenServiceManagerToLook();

}  // namespace qlx::platform
