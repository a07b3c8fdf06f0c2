// The one button of a dialog that only shows something.
#pragma once

#include <wx/button.h>
#include <wx/dialog.h>

namespace qlx {

/// Closes `dialog` when it is pressed, and by Enter and Escape.
wxButton* MakeClosingButton(wxDialog& dialog, const wxString& label);

}  // namespace qlx
