#include "platform/service_control.h"

#include <string>
#include <utility>

#include <windows.h>

#include "platform/text.h"

namespace qlx::platform {
namespace {

int LastError() {
  return static_cast<int>(GetLastError());
}

/// Owns a handle of the service control manager, or keeps the error that opening it met.
class ManagerHandle {
 public:
  explicit ManagerHandle(SC_HANDLE opened) : handle_(opened), error_(opened == nullptr ? LastError() : 0) {}
  explicit ManagerHandle(int error) : error_(error) {}
  ManagerHandle(const ManagerHandle&) = delete;
  ManagerHandle& operator=(const ManagerHandle&) = delete;
  ~ManagerHandle() {
    if (handle_ != nullptr) CloseServiceHandle(handle_);
  }

  explicit operator bool() const { return handle_ != nullptr; }
  SC_HANDLE get() const { return handle_; }
  int error() const { return error_; }

 private:
  SC_HANDLE handle_ = nullptr;
  int error_;
};

/// What is asked for at the manager and at each of its services.
struct Access {
  DWORD manager;
  DWORD service;
};
constexpr Access kControl = {SC_MANAGER_ALL_ACCESS, SERVICE_ALL_ACCESS};
constexpr Access kLook = {SC_MANAGER_CONNECT, SERVICE_QUERY_STATUS};

ManagerHandle OpenedService(const ManagerHandle& manager, const std::wstring& name, const Access& access) {
  if (!manager) return ManagerHandle(manager.error());
  return ManagerHandle(OpenServiceW(manager.get(), name.c_str(), access.service));
}

class ControlledService final : public Service {
 public:
  ControlledService(const ManagerHandle& manager, const std::wstring& name, const Access& access)
      : service_(OpenedService(manager, name, access)) {}

  std::optional<ServiceState> QueryState() override {
    const auto state = CurrentState();
    if (!state) return std::nullopt;
    if (*state == SERVICE_RUNNING) return ServiceState::kRunning;
    return *state == SERVICE_STOPPED ? ServiceState::kStopped : ServiceState::kPending;
  }

  std::optional<int> RequestStop() override {
    if (!service_) return service_.error();
    SERVICE_STATUS status{};
    if (ControlService(service_.get(), SERVICE_CONTROL_STOP, &status)) return std::nullopt;
    return LastError();
  }

  std::optional<int> Start() override {
    if (!service_) return service_.error();
    if (StartServiceW(service_.get(), 0, nullptr)) return std::nullopt;
    const int error = LastError();
    // Somebody else may have been quicker.
    if (error == ERROR_SERVICE_ALREADY_RUNNING && StartsOrRuns()) return std::nullopt;
    return error;
  }

 private:
  std::optional<DWORD> CurrentState() const {
    SERVICE_STATUS_PROCESS status{};
    DWORD size = sizeof status;
    if (!service_ || !QueryServiceStatusEx(service_.get(), SC_STATUS_PROCESS_INFO,
                                           reinterpret_cast<BYTE*>(&status), size, &size))
      return std::nullopt;
    return status.dwCurrentState;
  }

  bool StartsOrRuns() const {
    const auto state = CurrentState();
    return state == SERVICE_START_PENDING || state == SERVICE_RUNNING;
  }

  ManagerHandle service_;
};

class ControlManager final : public ServiceManager {
 public:
  explicit ControlManager(const Access& access)
      : access_(access), manager_(OpenSCManagerW(nullptr, nullptr, access.manager)) {}

  std::unique_ptr<Service> Open(std::string_view name) override {
    return std::make_unique<ControlledService>(manager_, FromUtf8(name), access_);
  }

 private:
  Access access_;
  ManagerHandle manager_;
};

}  // namespace

std::unique_ptr<ServiceManager> OpenServiceManager() {
  return std::make_unique<ControlManager>(kControl);
}

std::unique_ptr<ServiceManager> OpenServiceManagerToLook() {
  return std::make_unique<ControlManager>(kLook);
}

}  // namespace qlx::platform
