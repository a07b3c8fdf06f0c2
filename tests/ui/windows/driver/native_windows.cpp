#include "tests/ui/windows/driver/native_windows.h"

namespace qlx::driver {
namespace {

constexpr UINT kAnswerTimeMs = 20000;
constexpr int kLongestClassName = 256;

struct Search {
  DWORD process;
  std::vector<HWND> found;
};

BOOL CALLBACK AddOfProcess(HWND window, LPARAM data) {
  auto& search = *reinterpret_cast<Search*>(data);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process == search.process && IsWindowVisible(window) != 0) search.found.push_back(window);
  return TRUE;
}

BOOL CALLBACK AddAny(HWND window, LPARAM data) {
  reinterpret_cast<std::vector<HWND>*>(data)->push_back(window);
  return TRUE;
}

}  // namespace

std::vector<HWND> TopLevelWindows(DWORD process) {
  Search search = {process, {}};
  EnumWindows(AddOfProcess, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

std::vector<HWND> Descendants(HWND window) {
  std::vector<HWND> found;
  EnumChildWindows(window, AddAny, reinterpret_cast<LPARAM>(&found));
  return found;
}

HWND FindControl(DWORD process, int number) {
  HWND hidden = nullptr;
  for (const HWND window : TopLevelWindows(process)) {
    for (const HWND control : Descendants(window)) {
      if (GetDlgCtrlID(control) != number) continue;
      if (IsWindowVisible(control) != 0) return control;
      hidden = control;
    }
  }
  return hidden;
}

bool IsUsable(HWND window) {
  for (HWND part = window; part != nullptr; part = GetAncestor(part, GA_PARENT)) {
    if (IsWindowEnabled(part) == 0) return false;
  }
  return true;
}

HWND FocusOf(DWORD process) {
  for (const HWND window : TopLevelWindows(process)) {
    GUITHREADINFO information{};
    information.cbSize = sizeof information;
    if (GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &information) != 0) {
      return information.hwndFocus;
    }
  }
  return nullptr;
}

void GiveFocus(HWND control) {
  Ask(GetAncestor(control, GA_ROOT), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}

std::wstring ClassOf(HWND window) {
  wchar_t name[kLongestClassName] = L"";
  GetClassNameW(window, name, kLongestClassName);
  return name;
}

std::wstring TextOf(HWND window) {
  return TextStartOf(window, static_cast<std::size_t>(Ask(window, WM_GETTEXTLENGTH)));
}

std::wstring TextStartOf(HWND window, std::size_t count) {
  std::wstring text(count + 1, L'\0');
  const LRESULT length = Ask(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

LRESULT Ask(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  DWORD_PTR result = 0;
  const LRESULT answered =
      SendMessageTimeoutW(window, message, wparam, lparam, SMTO_NORMAL, kAnswerTimeMs, &result);
  return answered == 0 ? 0 : static_cast<LRESULT>(result);
}

}  // namespace qlx::driver
