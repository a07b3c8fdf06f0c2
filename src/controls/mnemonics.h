// Alt and the underlined letter of a label.
#pragma once

#include <wx/window.h>

namespace qlx {

/// Wherever in `window` the focus is, the key of a button or a box presses it, and that of any other label
/// gives the focus to the control that follows the label in the tab order. Call it once the controls are in
/// their order.
void ServeMnemonics(wxWindow& window);

}  // namespace qlx
