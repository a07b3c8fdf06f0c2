// The icon in the frame of a dialog.
#pragma once

#include <wx/toplevel.h>

namespace qlx {

/// Gives `dialog` the icons of the window that it was opened from: without, each system shows one of its own.
void TakeParentIcons(wxTopLevelWindow& dialog);

}  // namespace qlx
