#include "controls/tool_tips.h"

#include <wx/textwrapper.h>

#include "controls/accessible_id.h"
#include "controls/translation.h"

namespace qlx {
namespace {

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

void SetTip(wxWindow& control, const wxString& text, int width) {
  control.SetToolTip(LineJoiner().Joined(&control, text, control.FromDIP(width)));
  SetAccessibleDescription(control, text);
}

void ExplainTerms(wxWindow& page, std::span<const Term> terms) {
  // Breaking lines takes a millisecond a page, and nobody asks for a tip before the window is there.
  page.CallAfter([&page, terms] {
    for (const Term& term : terms) SetTip(*page.FindWindow(term.control), _(term.meaning), kTermTipWidth);
  });
}

}  // namespace qlx
