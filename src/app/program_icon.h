// The tool's own icon, drawn once as vectors.
#pragma once

#include <wx/bmpbndl.h>
#include <wx/iconbndl.h>

namespace qlx {

/// The icon at a size of `size` standard pixels, sharp at every scale.
wxBitmapBundle ProgramIcon(const wxSize& size);

/// The icon in the sizes that window managers ask for.
wxIconBundle ProgramIcons();

}  // namespace qlx
