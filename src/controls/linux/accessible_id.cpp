#include "controls/accessible_id.h"

#include <string>

#include <gtk/gtk.h>

namespace qlx {
namespace {

/// Of the widget that the user meets: a list or a text of many lines lies in one that only scrolls it.
AtkObject* AccessibleOf(wxWindow& window) {
  if (window.GetHandle() == nullptr) return nullptr;
  GtkWidget* widget = GTK_WIDGET(window.GetHandle());
  if (GTK_IS_SCROLLED_WINDOW(widget)) widget = gtk_bin_get_child(GTK_BIN(widget));
  return gtk_widget_get_accessible(widget);
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

void SetAccessibleDescription(wxWindow& control, const wxString& description) {
  if (AtkObject* accessible = AccessibleOf(control)) {
    atk_object_set_description(accessible, description.utf8_str());
  }
}

}  // namespace qlx
