// The windows of a process, as the system tells of them to anybody.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <windows.h>

namespace qlx::driver {

/// The visible top-level windows, the one in front first.
std::vector<HWND> TopLevelWindows(DWORD process);

/// Everything in `window`, parents first.
std::vector<HWND> Descendants(HWND window);

/// The control with the id `number` in the visible windows of `process`, one that is shown before one that is
/// not.
HWND FindControl(DWORD process, int number);

/// False too when something that `window` lies in takes no input.
bool IsUsable(HWND window);

/// The window of `process` that keys go to, or null.
HWND FocusOf(DWORD process);

/// Has the dialog that `control` lies in give it the focus.
void GiveFocus(HWND control);

std::wstring ClassOf(HWND window);
std::wstring TextOf(HWND window);
/// Its first `count` characters.
std::wstring TextStartOf(HWND window, std::size_t count);

/// The result of a message; 0 when the window has not answered within some seconds.
LRESULT Ask(HWND window, UINT message, WPARAM wparam = 0, LPARAM lparam = 0);

}  // namespace qlx::driver
