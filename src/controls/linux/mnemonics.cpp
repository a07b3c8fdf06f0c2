#include "controls/field_labels.h"

#include <gtk/gtk.h>
#include <wx/stattext.h>

namespace qlx {

void LeadLabelsToFields(wxWindow& window) {
  for (wxWindow* child : window.GetChildren()) {
    LeadLabelsToFields(*child);
    const auto* label = dynamic_cast<const wxStaticText*>(child);
    wxWindow* field = child->GetNextSibling();
    if (label == nullptr || field == nullptr || label->GetLabel() == label->GetLabelText()) continue;
    gtk_label_set_mnemonic_widget(GTK_LABEL(label->GetHandle()), GTK_WIDGET(field->GetHandle()));
  }
}

}  // namespace qlx
