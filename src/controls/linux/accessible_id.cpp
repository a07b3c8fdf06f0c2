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

decltype(AtkObjectClass::ref_state_set) states_of_combo_box = nullptr;

/// The part of a drop-down list that takes the focus; the list itself has it for a screen reader.
void FindFocusable(GtkWidget* part, void* found) {
  if (GTK_IS_TOGGLE_BUTTON(part)) {
    *static_cast<GtkWidget**>(found) = part;
  } else if (GTK_IS_CONTAINER(part)) {
    gtk_container_forall(GTK_CONTAINER(part), FindFocusable, found);
  }
}

AtkStateSet* StatesOfComboBox(AtkObject* accessible) {
  AtkStateSet* states = states_of_combo_box(accessible);
  GtkWidget* widget = gtk_accessible_get_widget(GTK_ACCESSIBLE(accessible));
  GtkWidget* focusable = nullptr;
  if (widget != nullptr) gtk_container_forall(GTK_CONTAINER(widget), FindFocusable, &focusable);
  if (focusable == nullptr || !gtk_widget_get_can_focus(focusable)) return states;
  atk_state_set_add_state(states, ATK_STATE_FOCUSABLE);
  if (gtk_widget_has_focus(focusable)) atk_state_set_add_state(states, ATK_STATE_FOCUSED);
  return states;
}

/// GTK announces that a drop-down list gets the focus, but when asked whether the list has it or can have it
/// answers for the widget around its parts, which never has. It has one class for all drop-down lists.
void TellFocusOfComboBox(AtkObject* combo_box) {
  AtkObjectClass* kind = ATK_OBJECT_GET_CLASS(combo_box);
  if (kind->ref_state_set != StatesOfComboBox) {
    states_of_combo_box = kind->ref_state_set;
    kind->ref_state_set = StatesOfComboBox;
  }
  // A screen reader may have asked before.
  atk_object_notify_state_change(combo_box, ATK_STATE_FOCUSABLE, true);
}

}  // namespace

void PublishIds(wxWindow& window) {
  AtkObject* accessible = AccessibleOf(window);
  if (accessible != nullptr && GTK_IS_COMBO_BOX(window.GetHandle())) TellFocusOfComboBox(accessible);
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
