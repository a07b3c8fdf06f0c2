#include "services/ServiceProbe.h"

#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace qlx {
namespace {

using platform::ServiceState;

ServiceStates StatesOf(const ServiceProbe::OpenManager& open_manager) {
  const auto manager = open_manager();
  return {manager->Open("QLXLOGSVC")->QueryState(), manager->Open("QLXSVC")->QueryState()};
}

}  // namespace

Message ServicesMessage(const ServiceStates& states) {
  const auto [logging, framework] = states;
  if (!logging || !framework) return {Translatable(L"Services: unknown")};
  if (logging == ServiceState::kPending || framework == ServiceState::kPending) {
    return {Translatable(L"Services: starting or stopping")};
  }
  if (logging == framework) {
    return {logging == ServiceState::kRunning ? Translatable(L"Services: running")
                                              : Translatable(L"Services: stopped")};
  }
  // TRANSLATORS: the name of one of the two services
  return {Translatable(L"Services: %s stopped"),
          logging == ServiceState::kRunning ? L"QLXSVC" : L"QLXLOGSVC"};
}

/// Belongs to the probe and to the thread that still asks, whichever lives longer.
struct ServiceProbe::Shared {
  OpenManager open_manager;
  Report report;
  std::mutex lock;
  std::thread asker;  ///< joinable while a question is open
  bool closed = false;
};

ServiceProbe::ServiceProbe(OpenManager open_manager, Report report) : shared_(std::make_shared<Shared>()) {
  shared_->open_manager = std::move(open_manager);
  shared_->report = std::move(report);
}

ServiceProbe::~ServiceProbe() {
  const std::lock_guard guard(shared_->lock);
  shared_->closed = true;
}

bool ServiceProbe::Ask() {
  const std::lock_guard guard(shared_->lock);
  if (shared_->asker.joinable()) return false;
  try {
    shared_->asker = std::thread([shared = shared_] { Answer(*shared); });
  } catch (const std::system_error&) {
    return false;
  }
  return true;
}

void ServiceProbe::Answer(Shared& shared) {
  const ServiceStates states = StatesOf(shared.open_manager);
  // Told under the lock: the probe cannot go away between the check and the report.
  const std::lock_guard guard(shared.lock);
  // By itself: one that is let go before it has begun may never begin in the Windows build.
  shared.asker.detach();
  if (!shared.closed) shared.report(states);
}

}  // namespace qlx
