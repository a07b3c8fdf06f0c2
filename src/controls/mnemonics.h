// Labels whose mnemonic leads to the field behind them.
#pragma once

#include <wx/window.h>

namespace qlx {

/// Lets the mnemonic of every label in `window` give the focus to the control that follows it in the tab
/// order. Call it once the controls are in their order.
void LeadLabelsToFields(wxWindow& window);

}  // namespace qlx
