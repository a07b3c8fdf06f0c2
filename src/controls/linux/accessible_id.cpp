#include "controls/accessible_id.h"

#include <string>

#include <gtk/gtk.h>

namespace qlx {
namespace {

AtkObject* AccessibleOf(wxWindow& window) {
  return window.GetHandle() != nullptr ? gtk_widget_get_accessible(GTK_WIDGET(window.GetHandle())) : nullptr;
}

}  // namespace

void PublishIds(wxWindow& window) {
  AtkObject* accessible = AccessibleOf(window);
  if (accessible != nullptr && window.GetId() >= 0) {
    atk_object_set_accessible_id(accessible, std::to_string(window.GetId()).c_str());
  }
  for (wxWindow* child : window.GetChildren()) PublishIds(*child);
}

void SetAccessibleName(wxWindow& control, const wxString& name) {
  if (AtkObject* accessible = AccessibleOf(control)) atk_object_set_name(accessible, name.utf8_str());
}

}  // namespace qlx
