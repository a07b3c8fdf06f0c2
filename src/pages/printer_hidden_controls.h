// The settings of the printer page that nobody sees.
#pragma once

#include <wx/window.h>

namespace qlx {

/// Makes the controls for settings that the printers in use are given elsewhere, hidden, in `page`, which
/// owns them. Those of the logos are LogoControls'.
void MakeHiddenPrinterControls(wxWindow* page);

}  // namespace qlx
