#include "controls/CProgressDialog.h"

#include <wx/sizer.h>

#include "controls/accessible_id.h"
#include "controls/translation.h"
#include "controls/window_icons.h"

namespace qlx {
namespace {

constexpr int kMarqueeIntervalMs = 30;

}  // namespace

CProgressDialog::CProgressDialog(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("In Progress..."), wxDefaultPosition, wxDefaultSize, wxCAPTION) {
  TakeParentIcons(*this);
  bar_ = new wxGauge(this, kBarId, 100, wxDefaultPosition, ConvertDialogToPixels(wxSize(151, 14)));
  SetAccessibleName(*bar_, GetTitle());
  auto* frame = new wxBoxSizer(wxVERTICAL);
  frame->AddStretchSpacer();
  frame->Add(bar_, wxSizerFlags().Expand().Border(wxALL, ConvertDialogToPixels(wxSize(7, 0)).x));
  frame->AddStretchSpacer();
  frame->SetMinSize(ConvertDialogToPixels(wxSize(165, 49)));
  SetSizerAndFit(frame);
  CentreOnParent();
  PublishIds(*this);

  Bind(wxEVT_CLOSE_WINDOW, [](wxCloseEvent& event) { event.Veto(); });
  Bind(wxEVT_CHAR_HOOK, [](wxKeyEvent& event) {
    if (event.GetKeyCode() != WXK_ESCAPE) event.Skip();
  });
  marquee_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { bar_->Pulse(); });
  marquee_.Start(kMarqueeIntervalMs);
}

}  // namespace qlx
