// What a control says when the mouse rests on it; a screen reader tells it as the control's description.
#pragma once

#include <span>

#include <wx/window.h>

namespace qlx {

/// Widths are device-independent pixels; a longer word stands over.
inline constexpr int kTermTipWidth = 360;

/// `text` in lines of at most `width`.
void SetTip(wxWindow& control, const wxString& text, int width);

/// A term of the trade: the control that bears it, and what it means, marked for translation.
struct Term {
  int control;
  const char* meaning;
};

/// Once the window has nothing else to do. Every control of `terms`, which outlives `page`, is in `page`.
void ExplainTerms(wxWindow& page, std::span<const Term> terms);

}  // namespace qlx
