#include "pages/IBDialog.h"

#include <utility>

#include <wx/statbox.h>
#include <wx/stattext.h>

#include "controls/CToolTipButton.h"
#include "controls/accessible_id.h"
#include "controls/tool_tips.h"
#include "controls/translation.h"
#include "pages/CHexEdit.h"

namespace qlx {
namespace {

constexpr int kDefaultButton = 1033;
constexpr int kApplyButton = 1034;
constexpr int kAscii = 1046;
constexpr int kHex = 1047;

constexpr const char* kNote =
    Translatable("Note: Prefix, Suffix and On Remove take hex values only, 16 bytes at most.");

constexpr const char* kDelimiters[] = {Translatable("None"), Translatable("CR"), Translatable("LF"),
                                       Translatable("CR+ LF"), Translatable("TAB")};

constexpr IBDialog::ByteStringControls kByteStrings[] = {
    {IBSettings::kPrefix, Translatable("Prefi&x:"), 1048,
     Translatable(L"Paste converted ASCII characters from the HEX text box to the Prefix text box")},
    {IBSettings::kSuffix, Translatable("S&uffix (Postfix):"), 1049,
     Translatable(L"Paste converted ASCII characters from the HEX text box to the Suffix text box")},
    {IBSettings::kOnRemove, Translatable("On &Remove:"), 1050,
     Translatable(L"Paste converted ASCII characters from the HEX text box to the On Remove text box")},
};

constexpr Term kTerms[] = {
    {IBSettings::kStart, Translatable("Where the part of the key's identifier that is sent begins.")},
    {IBSettings::kLength, Translatable("How much of the key's identifier is sent.")},
    {IBSettings::kDelimiter, Translatable("What follows the identifier.")},
    {IBSettings::kPrefix,
     Translatable("Bytes before the identifier, two hexadecimal digits each, for example 02 41.")},
    {IBSettings::kSuffix,
     Translatable("Bytes behind the identifier, two hexadecimal digits each, for example 0D 0A.")},
    {IBSettings::kOnRemove, Translatable("Bytes that are sent when the key is taken away.")},
};

wxArrayString Numbers() {
  wxArrayString numbers;
  for (int number = 1; number <= 16; ++number) numbers.Add(std::to_string(number));
  return numbers;
}

}  // namespace

IBDialog::IBDialog(wxWindow* parent, FatalEnd end_program)
    : PageView(parent, settings_, std::move(end_program)) {
  auto* page = new wxBoxSizer(wxVERTICAL);
  page->Add(MakeParameters(), wxSizerFlags().Expand().Border(wxALL));
  page->Add(MakeConverter(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT));
  page->AddStretchSpacer();
  auto* note = new wxStaticText(this, wxID_ANY, _(kNote));
  note->Wrap(kNoteCharacters * GetCharWidth());
  page->Add(note, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxTOP));
  page->Add(MakeButtons(kDefaultButton, kApplyButton), wxSizerFlags().Right().Border(wxALL));
  SetSizer(page);
  ExplainTerms(*this, kTerms);
}

wxSizer* IBDialog::MakeParameters() {
  auto* group = new wxStaticBoxSizer(wxVERTICAL, this, _("iButton Configuration Parameters"));
  auto* grid = new wxFlexGridSizer(3, wxSize(GetCharWidth(), GetCharHeight() / 3));
  group->Add(MakeChoices(group->GetStaticBox()), wxSizerFlags().Border(wxALL));
  for (const ByteStringControls& row : kByteStrings) AddByteString({group->GetStaticBox(), grid}, row);
  group->Add(grid, wxSizerFlags().Border(wxALL));
  return group;
}

wxSizer* IBDialog::MakeChoices(wxWindow* group) {
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  const auto add = [&](int id, const wxString& label, const wxArrayString& items) {
    if (!row->IsEmpty()) row->AddSpacer(3 * GetCharWidth());
    AddLabel({group, row}, label);
    row->AddSpacer(GetCharWidth());
    AddChoice({group, row}, id, label, items);
  };
  add(IBSettings::kStart, _("ID &Start:"), Numbers());
  add(IBSettings::kLength, _("ID Len&gth:"), Numbers());
  add(IBSettings::kDelimiter, _("Deli&miter:"), Translated(kDelimiters));
  return row;
}

void IBDialog::AddByteString(Place place, const ByteStringControls& row) {
  AddLabel(place, _(row.label));
  AddHexEdit(place, row.field, _(row.label));
  auto* copy =
      new CToolTipButton(place.parent, row.copy, "...", wxDefaultPosition, wxDefaultSize, wxBU_EXACTFIT);
  copy->SetMinSize({4 * GetCharWidth(), -1});
  copy->SetToolTipText(Translated(row.tip).c_str());
  copy->Bind(wxEVT_BUTTON, [this, field = row.field](wxCommandEvent&) {
    static_cast<CHexEdit*>(FindWindow(field))->SetText(hex_->Text());
  });
  place.sizer->Add(copy, wxSizerFlags().CentreVertical());
}

wxSizer* IBDialog::MakeConverter() {
  auto* group = new wxStaticBoxSizer(wxVERTICAL, this, _("ASCII to HEX Converter"));
  auto* grid = new wxFlexGridSizer(2, wxSize(GetCharWidth(), GetCharHeight() / 3));
  grid->AddGrowableCol(1);
  wxWindow* const parent = group->GetStaticBox();

  AddLabel({parent, grid}, _("AS&CII:"));
  auto* ascii = new LimitedEdit(parent, kAscii, {.limit = kConverterLength});
  SetAccessibleName(*ascii, wxControl::RemoveMnemonics(_("AS&CII:")));
  grid->Add(ascii);

  AddLabel({parent, grid}, _("H&EX:"));
  hex_ = new LimitedEdit(parent, kHex, {}, wxTE_READONLY);
  SetAccessibleName(*hex_, wxControl::RemoveMnemonics(_("H&EX:")));
  grid->Add(hex_, wxSizerFlags().Expand());

  ascii->Bind(wxEVT_TEXT, [this, ascii](wxCommandEvent&) { hex_->SetText(AsciiToHex(ascii->Text())); });
  group->Add(grid, wxSizerFlags().Expand().Border(wxALL));
  return group;
}

}  // namespace qlx
