#include "controls/CToolTipButton.h"

#include <wx/textwrapper.h>

#include "controls/accessible_id.h"

namespace qlx {
namespace {

constexpr int kMaximalTipWidth = 200;

/// The toolkit's own tooltips wrap at a width of their own, so the lines are broken here.
class LineJoiner : public wxTextWrapper {
 public:
  wxString Joined(wxWindow* measure, const wxString& text, int width) {
    Wrap(measure, text, width);
    return joined_;
  }

 private:
  void OnOutputLine(const wxString& line) override { joined_ += line; }
  void OnNewLine() override { joined_ += '\n'; }

  wxString joined_;
};

}  // namespace

void CToolTipButton::SetToolTipText(const wchar_t* text) {
  if (text == nullptr) return;
  SetToolTip(LineJoiner().Joined(this, text, FromDIP(kMaximalTipWidth)));
  SetAccessibleDescription(*this, text);
}

}  // namespace qlx
