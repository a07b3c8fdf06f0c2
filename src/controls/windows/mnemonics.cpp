#include "controls/mnemonics.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/msw/wrapwin.h>
#include <wx/stattext.h>

namespace qlx {
namespace {

/// Of other controls the label is what they hold, where the mark means itself.
bool HasLabel(const wxWindow& control) {
  return dynamic_cast<const wxStaticText*>(&control) != nullptr ||
         dynamic_cast<const wxButton*>(&control) != nullptr ||
         dynamic_cast<const wxCheckBox*>(&control) != nullptr;
}

bool HasMnemonic(const wxWindow& control, wxChar key) {
  if (!HasLabel(control)) return false;
  const wxString label = control.GetLabel();
  const int mark = label.Find('&');
  return mark != wxNOT_FOUND && label.Mid(static_cast<std::size_t>(mark) + 1, 1).Upper() == wxString(key);
}

/// The first control below `window` that is shown and can be used.
wxWindow* FindMnemonic(const wxWindow& window, wxChar key) {
  for (wxWindow* child : window.GetChildren()) {
    if (!child->IsShown() || !child->IsEnabled()) continue;
    if (HasMnemonic(*child, key)) return child;
    if (wxWindow* found = FindMnemonic(*child, key)) return found;
  }
  return nullptr;
}

void Serve(wxWindow& control) {
  if (dynamic_cast<wxStaticText*>(&control) == nullptr) {
    SendMessageW(control.GetHWND(), BM_CLICK, 0, 0);
    return;
  }
  wxWindow* field = control.GetNextSibling();
  if (field != nullptr && field->IsEnabled()) field->SetFocusFromKbd();
}

}  // namespace

/// The system looks for the letter in the group or page that has the focus only.
void ServeMnemonics(wxWindow& window) {
  window.Bind(wxEVT_CHAR_HOOK, [&window](wxKeyEvent& event) {
    wxWindow* control =
        event.GetModifiers() == wxMOD_ALT ? FindMnemonic(window, event.GetUnicodeKey()) : nullptr;
    if (control != nullptr) {
      Serve(*control);
    } else {
      event.Skip();
    }
  });
}

}  // namespace qlx
