// The way into the toolkit's text field by which every edit is made by somebody else.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <wx/textctrl.h>

namespace qlx {

/// Makes a text field's edits in its place. Positions count characters. Each function answers for one edit
/// that the field is about to make: whether, or with which caret, it has been made already, so that the field
/// leaves it; otherwise the field makes it itself.
struct EditMaker {
  /// A printable character from the keyboard, before it replaces a selection.
  std::function<bool(wchar_t)> type;
  /// An insertion from any other source; a selection that it replaces has gone as an erasure.
  std::function<std::optional<long>(long position, const std::wstring& inserted)> insert;
  std::function<bool(long start, long end)> erase;
};

/// Puts `maker` before every edit of the single-line `control`, for the control's lifetime.
void InterceptEdits(wxTextCtrl& control, EditMaker maker);

}  // namespace qlx
