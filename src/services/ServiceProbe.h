// Whether the suite's two services run, asked for without ever holding up the one who asks.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "config/Message.h"
#include "platform/service_control.h"

namespace qlx {

/// What is known of the suite's services; empty where the manager gave no answer.
struct ServiceStates {
  std::optional<platform::ServiceState> logging;
  std::optional<platform::ServiceState> framework;
};

/// `states` in words, for the status line.
Message ServicesMessage(const ServiceStates& states);

/// One question at a time, each on a thread of its own that nobody waits for: a manager that hangs holds up
/// neither the one who asks nor the end of the program.
class ServiceProbe {
 public:
  using OpenManager = std::function<std::unique_ptr<platform::ServiceManager>()>;
  using Report = std::function<void(const ServiceStates&)>;

  /// `open_manager` and `report` are called on the question's thread, `report` never again once this object
  /// is gone. `report` must return at once and must not ask again.
  ServiceProbe(OpenManager open_manager, Report report);
  ServiceProbe(const ServiceProbe&) = delete;
  ServiceProbe& operator=(const ServiceProbe&) = delete;
  ~ServiceProbe();

  /// Returns at once; the answer goes to the report. False, and nothing asked, while the last question has no
  /// answer yet, or when the system has no thread to give.
  bool Ask();

 private:
  struct Shared;
  static void Answer(Shared& shared);

  std::shared_ptr<Shared> shared_;
};

}  // namespace qlx
