// A strip at the top of a window that says what holds for all of it.
#pragma once

#include <wx/panel.h>

namespace qlx {

/// A sign and a text, in the colours that the user's theme has for hints.
class Banner : public wxPanel {
 public:
  /// `text` is broken into lines of about `characters` average characters; `id` is the text's number.
  Banner(wxWindow* parent, int id, const wxString& text, int characters);
};

}  // namespace qlx
