// The messages of a native text field, seen before the field acts on them.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <wx/msw/wrapwin.h>
#include <wx/textctrl.h>

namespace qlx {

struct EditMessage {
  HWND edit;
  UINT number;
  WPARAM wparam;
  LPARAM lparam;

  /// What comes next of the toolkit's and the field's own handling, by this message or another.
  LRESULT Forward() const { return Forward(number, wparam, lparam); }
  LRESULT Forward(UINT other, WPARAM other_wparam, LPARAM other_lparam) const;

  /// The text that the message carries, for EM_REPLACESEL and WM_SETTEXT.
  std::wstring text() const;
};

/// The result of the message, or empty to let it go on.
using EditHandler = std::function<std::optional<LRESULT>(const EditMessage&)>;

/// Puts `handler` before the handling of every message to `control`, for the control's lifetime.
void HandleEditMessages(wxTextCtrl& control, EditHandler handler);

struct EditSelection {
  std::size_t start;
  std::size_t end;
};

/// In UTF-16 code units.
EditSelection SelectionOf(HWND edit);

std::wstring TextOf(HWND edit);

/// False for what the keyboard sends as a character and no text field inserts.
bool IsPrintable(wchar_t character);

}  // namespace qlx
