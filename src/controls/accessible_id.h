// Makes controls addressable from outside: by number, as tests and automation do, and by name, as readers do.
#pragma once

#include <wx/window.h>

namespace qlx {

/// Publishes the numeric id of `window` and of everything in it to the accessibility tree. Call it once the
/// controls exist.
void PublishIds(wxWindow& window);

/// Gives `control` the accessible name `name`, for controls whose label stands beside them.
void SetAccessibleName(wxWindow& control, const wxString& name);

/// Gives `control` the sentence that a screen reader says behind its name.
void SetAccessibleDescription(wxWindow& control, const wxString& description);

}  // namespace qlx
