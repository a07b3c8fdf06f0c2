#include "controls/Banner.h"

#include <wx/artprov.h>
#include <wx/dcclient.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "controls/accessible_id.h"

namespace qlx {

Banner::Banner(wxWindow* parent, int id, const wxString& text, int characters) : wxPanel(parent) {
  m_container.DisableSelfFocus();  // the tab key passes it by
  SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_INFOBK));
  auto* words = new wxStaticText(this, id, text);
  words->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_INFOTEXT));
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
