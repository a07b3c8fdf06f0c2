// A push button that explains itself when the mouse rests on it.
#pragma once

#include <wx/button.h>

namespace qlx {

/// The tooltip wraps at about 200 pixels of the standard text size and grows with it.
class CToolTipButton : public wxButton {
 public:
  using wxButton::wxButton;

  /// Replaces the tooltip; null does nothing.
  void SetToolTipText(const wchar_t* text);
};

}  // namespace qlx
