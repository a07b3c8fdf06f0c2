#include "controls/DropDownList.h"

namespace qlx {

wxSize DropDownList::DoGetBestSize() const {
  wxSize best = wxChoice::DoGetBestSize();
  best.IncTo(wxSize(-1, GetCharHeight() * 8 / 5));
  return best;
}

}  // namespace qlx
