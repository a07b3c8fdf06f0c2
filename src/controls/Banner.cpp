#include "controls/Banner.h"

#include <wx/artprov.h>
#include <wx/dcclient.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "controls/accessible_id.h"

namespace qlx {
namespace {

constexpr double kAccent = 0.2;  // of the whole

/// A little of the desktop's accent on the ground of its windows: that stands out in a light theme as in a
/// dark one, and the windows' own text can be read on it.
wxColour Ground() {
  const wxColour ground = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
  const wxColour accent = wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT);
  const auto mixed = [](unsigned char over, unsigned char under) {
    return wxColour::AlphaBlend(over, under, kAccent);
  };
  return {mixed(accent.Red(), ground.Red()), mixed(accent.Green(), ground.Green()),
          mixed(accent.Blue(), ground.Blue())};
}

}  // namespace

Banner::Banner(wxWindow* parent, int id, const wxString& text, int characters) : wxPanel(parent) {
  m_container.DisableSelfFocus();  // the tab key passes it by
  SetBackgroundColour(Ground());
  auto* words = new wxStaticText(this, id, text);
  words->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT));
  words->Wrap(characters * GetCharWidth());
  // A label that may break its lines asks for less room than they take.
  words->SetMinSize(wxClientDC(words).GetMultiLineTextExtent(words->GetLabel()));
  SetAccessibleName(*words, text);
  auto* sign =
      new wxStaticBitmap(this, wxID_ANY, wxArtProvider::GetBitmapBundle(wxART_INFORMATION, wxART_BUTTON));

  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(sign, wxSizerFlags().CentreVertical().Border(wxALL));
  row->Add(words, wxSizerFlags(1).CentreVertical().Border(wxTOP | wxRIGHT | wxBOTTOM));
  SetSizer(row);
}

}  // namespace qlx
