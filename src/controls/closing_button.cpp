#include "controls/closing_button.h"

namespace qlx {

/// A number of its own: GTK would put its own word on the toolkit's, in the language of the process.
constexpr int kClose = 1;

wxButton* MakeClosingButton(wxDialog& dialog, const wxString& label) {
  auto* close = new wxButton(&dialog, kClose, label);
  close->SetDefault();
  dialog.SetAffirmativeId(kClose);
  dialog.SetEscapeId(kClose);
  return close;
}

}  // namespace qlx
