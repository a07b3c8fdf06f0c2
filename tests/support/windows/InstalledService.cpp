#include "tests/support/windows/InstalledService.h"

#include <array>
#include <stdexcept>

namespace qlx::test {
namespace {

constexpr std::array<const wchar_t*, 5> kBehaviours = {L"", L"refuses-to-stop", L"hangs-starting",
                                                       L"hangs-stopping", L"dies"};

constexpr int kTurns = 2000;
constexpr DWORD kTurnMs = 10;

std::wstring Quoted(const std::filesystem::path& path) {
  return L'"' + std::filesystem::absolute(path).make_preferred().wstring() + L'"';
}

/// A service of the same name that was deleted goes when its process and its last handle have gone.
SC_HANDLE Install(SC_HANDLE manager, const std::wstring& name, const std::wstring& command) {
  for (int turn = 0; turn < kTurns; ++turn) {
    const SC_HANDLE service =
        CreateServiceW(manager, name.c_str(), name.c_str(), SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS,
                       SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE, command.c_str(), nullptr, nullptr, nullptr,
                       nullptr, nullptr);
    if (service != nullptr || GetLastError() == ERROR_ACCESS_DENIED) return service;
    Sleep(kTurnMs);
  }
  return nullptr;
}

}  // namespace

InstalledService::InstalledService(const std::wstring& name, const std::filesystem::path& journal,
                                   StubBehaviour behaviour)
    : manager_(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)),
      service_(Install(manager_, name,
                       Quoted(QLX_STUB_SERVICE) + L' ' + name + L' ' + Quoted(journal) + L' ' +
                           kBehaviours[static_cast<std::size_t>(behaviour)])),
      let_go_(CreateEventW(nullptr, FALSE, FALSE, (L"Global\\QLXTestLetGo" + name).c_str())),
      over_(CreateEventW(nullptr, TRUE, FALSE, (L"Global\\QLXTestOver" + name).c_str())) {
  ResetEvent(over_.get());  // an earlier service of the name may have left it set
  if (service_ != nullptr) return;
  CloseServiceHandle(manager_);
  throw std::runtime_error("the service cannot be installed");
}

InstalledService::~InstalledService() {
  for (int turn = 0; turn < kTurns && state() != SERVICE_STOPPED; ++turn) {
    LetGo();
    Sleep(kTurnMs);
  }
  SetEvent(over_.get());
  DeleteService(service_);
  CloseServiceHandle(service_);
  CloseServiceHandle(manager_);
}

void InstalledService::Start() {
  if (!StartServiceW(service_, 0, nullptr))
    throw std::runtime_error("the service does not start: error " + std::to_string(GetLastError()));
  if (!Await(SERVICE_RUNNING)) throw std::runtime_error("the service does not run");
}

bool InstalledService::Await(DWORD wanted) const {
  for (int turn = 0; turn < kTurns && state() != wanted; ++turn) Sleep(kTurnMs);
  return state() == wanted;
}

void InstalledService::LetGo() {
  SetEvent(let_go_.get());
}

void InstalledService::Disable() {
  ChangeServiceConfigW(service_, SERVICE_NO_CHANGE, SERVICE_DISABLED, SERVICE_NO_CHANGE, nullptr, nullptr,
                       nullptr, nullptr, nullptr, nullptr, nullptr);
}

void InstalledService::LoseProgram() {
  ChangeServiceConfigW(service_, SERVICE_NO_CHANGE, SERVICE_NO_CHANGE, SERVICE_NO_CHANGE,
                       L"C:\\none\\none.exe", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
}

SERVICE_STATUS_PROCESS InstalledService::Status() const {
  SERVICE_STATUS_PROCESS status{};
  DWORD size = sizeof status;
  QueryServiceStatusEx(service_, SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status), size, &size);
  return status;
}

}  // namespace qlx::test
