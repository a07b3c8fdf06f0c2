#include "app/CAboutDlg.h"

#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "app/program_icon.h"
#include "controls/accessible_id.h"
#include "controls/closing_button.h"
#include "controls/translation.h"
#include "controls/window_icons.h"

namespace qlx {
namespace {

constexpr int kIconSize = 48;

}  // namespace

CAboutDlg::CAboutDlg(wxWindow* parent) : wxDialog(parent, wxID_ANY, _("About Configuration Tool")) {
  TakeParentIcons(*this);
  auto* version = new wxBoxSizer(wxHORIZONTAL);
  version->Add(new wxStaticText(this, wxID_ANY, _("Version:")), wxSizerFlags().Border(wxRIGHT));
  version->Add(new wxStaticText(this, wxID_ANY, QLX_VERSION));
  auto* lines = new wxBoxSizer(wxVERTICAL);
  lines->Add(version, wxSizerFlags().Border(wxBOTTOM));
  lines->Add(new wxStaticText(this, wxID_ANY, _("Configures the Quillon driver suite on this terminal.")),
             wxSizerFlags().Border(wxBOTTOM));
  lines->Add(new wxStaticText(this, wxID_ANY, _("Press F1 for help.")));

  auto* body = new wxBoxSizer(wxHORIZONTAL);
  body->Add(new wxStaticBitmap(this, wxID_ANY, ProgramIcon(wxSize(kIconSize, kIconSize))),
            wxSizerFlags().CentreVertical().DoubleBorder(wxALL));
  body->Add(lines, wxSizerFlags().CentreVertical().DoubleBorder(wxTOP | wxBOTTOM | wxRIGHT));
  auto* frame = new wxBoxSizer(wxVERTICAL);
  frame->Add(body);
  frame->Add(MakeClosingButton(*this, _("&OK")),
             wxSizerFlags().Right().DoubleBorder(wxLEFT | wxRIGHT | wxBOTTOM));
  SetSizerAndFit(frame);
  CentreOnParent();
  PublishIds(*this);
}

}  // namespace qlx
