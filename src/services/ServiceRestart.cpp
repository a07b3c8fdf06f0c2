#include "services/ServiceRestart.h"

#include <array>
#include <system_error>
#include <utility>

namespace qlx {
namespace {

using platform::Service;
using platform::ServiceState;

/// Members are destroyed from the last to the first: the handles close as logging, framework, manager.
struct Handles {
  std::unique_ptr<platform::ServiceManager> manager;
  std::unique_ptr<Service> framework;
  std::unique_ptr<Service> logging;
};

Handles Open(const ServiceRestart::OpenManager& open_manager) {
  Handles handles;
  handles.manager = open_manager();
  handles.logging = handles.manager->Open("QLXLOGSVC");
  handles.framework = handles.manager->Open("QLXSVC");
  return handles;
}

/// A service that is unknown or cannot be queried counts as stopped: the start that follows tells its error,
/// and nothing is waited for that can never come.
ServiceState StateOf(Service& service) {
  return service.QueryState().value_or(ServiceState::kStopped);
}

/// The wait has neither pause nor limit, on purpose. Each turn is one blocking call to the service manager.
/// A service that was only starting is waited for like one that is stopping, and is not asked to stop.
std::optional<int> Stop(Service& service) {
  if (StateOf(service) == ServiceState::kRunning) {
    if (const auto error = service.RequestStop()) return error;
  }
  while (StateOf(service) != ServiceState::kStopped) {
  }
  return std::nullopt;
}

std::optional<int> Start(Service& service) {
  return service.Start();
}

constexpr const wchar_t* kFrameworkFailed =
    Translatable(L"Quillon Framework Service failed to stop.\nRestart Quillon services manually.");
constexpr const wchar_t* kLoggingFailed =
    Translatable(L"Quillon Logging Service failed to stop.\nRestart Quillon services manually.");

constexpr const wchar_t* kRestarted = Translatable(L"Quillon services restarted.\n");

struct Step {
  std::unique_ptr<Service> Handles::*service;
  std::optional<int> (*action)(Service&);
  const wchar_t* error;
  const wchar_t* failure;
};

// A start that fails is reported with the text of a failed stop, on purpose.
constexpr std::array<Step, 4> kSteps = {{
    {&Handles::framework, Stop, Translatable(L"Stop QLX Service GetLastError = %s"), kFrameworkFailed},
    {&Handles::logging, Stop, Translatable(L"Stop Log Service GetLastError = %s"), kLoggingFailed},
    {&Handles::logging, Start, Translatable(L"Start Log Service GetLastError = %s"), kLoggingFailed},
    {&Handles::framework, Start, Translatable(L"Start MZP Service GetLastError = %s"), kFrameworkFailed},
}};

}  // namespace

ServiceRestart::ServiceRestart(OpenManager open_manager, RestartTarget& target, RestartEnd end)
    : open_manager_(std::move(open_manager)), target_(target), end_(end) {}

ServiceRestart::~ServiceRestart() {
  if (worker_.joinable()) worker_.join();
}

bool ServiceRestart::Start() {
  if (running_) return false;
  if (worker_.joinable()) worker_.join();
  running_ = true;
  try {
    worker_ = std::thread([this] { Work([this] { return Restart(); }); });
  } catch (const std::system_error& none) {
    Work([&] {
      TellFailure(kSteps.front().error, none.code().value(), kSteps.front().failure);
      return false;
    });
  }
  return true;
}

void ServiceRestart::Work(const std::function<bool()>& steps) {
  target_.OnRestartProgress(0);
  const bool restarted = steps();
  if (restarted || end_ == RestartEnd::kAlways) target_.OnRestartProgress(2);
  running_ = false;
}

bool ServiceRestart::Restart() {
  const Handles handles = Open(open_manager_);
  for (const Step& step : kSteps) {
    const auto error = step.action(*(handles.*step.service));
    if (!error) continue;
    TellFailure(step.error, *error, step.failure);
    return false;
  }
  target_.OnRestartProgress(1);
  target_.ShowRestartMessage({kRestarted}, RestartIcon::kInformation);
  return true;
}

void ServiceRestart::TellFailure(const wchar_t* what, int error, const wchar_t* outcome) {
  target_.OnRestartProgress(1);
  target_.ShowRestartMessage({what, std::to_wstring(error)}, RestartIcon::kNone);
  target_.ShowRestartMessage({outcome}, RestartIcon::kNone);
}

}  // namespace qlx
