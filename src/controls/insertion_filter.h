// The way into the toolkit's text field by which every insertion, whatever its source, passes a rule first.
#pragma once

#include <functional>
#include <string>

#include <wx/textctrl.h>

namespace qlx {

/// Given the text held and the text about to be inserted, the text to insert instead.
using InsertionFilter = std::function<std::wstring(const std::wstring& held, const std::wstring& inserted)>;

/// Puts `filter` before every insertion into the single-line `control`, for the control's lifetime.
void FilterInsertions(wxTextCtrl& control, InsertionFilter filter);

}  // namespace qlx
