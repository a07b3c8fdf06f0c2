#include "controls/field_labels.h"

namespace qlx {

/// The native dialogs do so by themselves.
void LeadLabelsToFields(wxWindow&) {}

}  // namespace qlx
