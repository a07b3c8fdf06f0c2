// A service for tests. It writes what happens to it into a journal, one line each, before the service manager
// hears of it. An event lets it go on from wherever it hangs, or end when it only runs.
// usage, as InstalledService has the service manager start it: stub_service NAME JOURNAL [BEHAVIOUR]
#include <cstdio>
#include <string>

#include <windows.h>

#include "platform/text.h"

namespace {

std::string name;
std::string journal;
std::string behaviour;
HANDLE stop_requested = nullptr;
HANDLE let_go = nullptr;
HANDLE over = nullptr;
SERVICE_STATUS_HANDLE status_handle = nullptr;

void Note(const char* happening) {
  std::FILE* file = std::fopen(journal.c_str(), "a");
  if (file == nullptr) return;
  std::fprintf(file, "%s %s\n", name.c_str(), happening);
  std::fclose(file);
}

void Report(DWORD state) {
  SERVICE_STATUS status{};
  status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
  status.dwCurrentState = state;
  if (state == SERVICE_RUNNING && behaviour != "refuses-to-stop")
    status.dwControlsAccepted = SERVICE_ACCEPT_STOP;
  SetServiceStatus(status_handle, &status);
}

DWORD WINAPI Control(DWORD control, DWORD, void*, void*) {
  if (control != SERVICE_CONTROL_STOP) return ERROR_CALL_NOT_IMPLEMENTED;
  Note("asked to stop");
  Report(SERVICE_STOP_PENDING);
  SetEvent(stop_requested);
  return NO_ERROR;
}

void WINAPI Run(DWORD, wchar_t** arguments) {
  status_handle = RegisterServiceCtrlHandlerExW(arguments[0], Control, nullptr);
  Report(SERVICE_START_PENDING);
  if (behaviour == "hangs-starting") WaitForSingleObject(let_go, INFINITE);
  Report(SERVICE_RUNNING);
  const HANDLE ends[] = {stop_requested, let_go};
  const bool let_go_already = WaitForMultipleObjects(2, ends, FALSE, INFINITE) == WAIT_OBJECT_0 + 1;
  if (behaviour == "hangs-stopping" && !let_go_already) WaitForSingleObject(let_go, INFINITE);
  Note("stopped");
  Report(SERVICE_STOPPED);
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 3) return 2;
  name = arguments[1];
  journal = arguments[2];
  if (count == 4) behaviour = arguments[3];
  Note("asked to start");
  if (behaviour == "dies") return 1;
  std::wstring wide = qlx::platform::FromUtf8(name);
  stop_requested = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  let_go = CreateEventW(nullptr, FALSE, FALSE, (L"Global\\QLXTestLetGo" + wide).c_str());
  over = CreateEventW(nullptr, TRUE, FALSE, (L"Global\\QLXTestOver" + wide).c_str());
  const SERVICE_TABLE_ENTRYW services[] = {{wide.data(), &Run}, {nullptr, nullptr}};
  if (!StartServiceCtrlDispatcherW(services)) return 1;
  // The system may still be answering whoever asked for the stop, from a thread that would end with this
  // process.
  WaitForSingleObject(over, INFINITE);
}
