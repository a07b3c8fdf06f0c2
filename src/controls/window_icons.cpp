#include "controls/window_icons.h"

namespace qlx {

void TakeParentIcons(wxTopLevelWindow& dialog) {
  const auto* owner = dynamic_cast<wxTopLevelWindow*>(wxGetTopLevelParent(dialog.GetParent()));
  if (owner != nullptr) dialog.SetIcons(owner->GetIcons());
}

}  // namespace qlx
