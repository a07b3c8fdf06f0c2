// The controls of the printer page that nobody sees.
#pragma once

#include <memory>

#include <wx/window.h>

#include "controls/ReportList.h"

namespace qlx {

/// Makes the controls for printer settings that the printers in use are given elsewhere, hidden, in `page`.
/// The list of the logos is returned; its window and the others belong to `page`.
std::unique_ptr<ReportList> MakeHiddenPrinterControls(wxWindow* page);

}  // namespace qlx
