#include "controls/mnemonics.h"

#include <gtk/gtk.h>
#include <wx/stattext.h>

namespace qlx {

/// GTK serves the keys of a whole window; it only has to be told what a label belongs to.
void ServeMnemonics(wxWindow& window) {
  for (wxWindow* child : window.GetChildren()) {
    ServeMnemonics(*child);
    const auto* label = dynamic_cast<const wxStaticText*>(child);
    wxWindow* field = child->GetNextSibling();
    if (label == nullptr || field == nullptr || label->GetLabel() == label->GetLabelText()) continue;
    gtk_label_set_mnemonic_widget(GTK_LABEL(label->GetHandle()), GTK_WIDGET(field->GetHandle()));
  }
}

}  // namespace qlx
