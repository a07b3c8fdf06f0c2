// A drop-down list that is large enough for its text in every text size.
#pragma once

#include <wx/choice.h>

namespace qlx {

class DropDownList : public wxChoice {
 public:
  using wxChoice::wxChoice;

 private:
  /// The toolkit's own answer forgets that large text needs a higher list.
  wxSize DoGetBestSize() const override;
};

}  // namespace qlx
