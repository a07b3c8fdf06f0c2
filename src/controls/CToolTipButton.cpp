#include "controls/CToolTipButton.h"

#include "controls/tool_tips.h"

namespace qlx {

constexpr int kMaximalTipWidth = 200;

void CToolTipButton::SetToolTipText(const wchar_t* text) {
  if (text != nullptr) SetTip(*this, text, kMaximalTipWidth);
}

}  // namespace qlx
