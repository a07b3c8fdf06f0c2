#include "pages/PageView.h"

#include <algorithm>

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/stattext.h>

#include "controls/DropDownList.h"
#include "controls/accessible_id.h"
#include "controls/message_box.h"
#include "controls/translation.h"
#include "pages/CHexEdit.h"

namespace qlx {
namespace {

template <typename Control>
Control* ControlOf(const wxWindow& page, int id) {
  return static_cast<Control*>(page.FindWindow(id));
}

}  // namespace

PageView::PageView(wxWindow* parent, PageSettings& settings, FatalEnd end_program)
    : SettingsPage(parent), settings_(settings), end_program_(std::move(end_program)) {}

void PageView::Initialise(ConfigDocument* document, bool editable) {
  if (document == nullptr) return end_program_(std::wstring(settings_.facts().no_document));
  document_ = document;
  settings_.SetEditable(editable);
  settings_.SetDefaults();
  settings_.Load(document_->ReadSection(std::wstring(settings_.facts().section)));
  Fill();
  ReadBack();  // a control may not hold all of a text
  settings_.MarkStored();
  PublishIds(*this);
  if (!editable) Disable();
}

void PageView::AddLabel(Place place, const wxString& label) {
  place.sizer->Add(new wxStaticText(place.parent, wxID_ANY, label), wxSizerFlags().CentreVertical());
}

void PageView::AddCheckBox(Place place, int id, const wxString& label) {
  place.sizer->Add(new wxCheckBox(place.parent, id, label), wxSizerFlags().CentreVertical());
}

void PageView::AddEdit(Place place, int id, const wxString& name, int flags, long style) {
  const auto row = std::ranges::find(settings_.rows(), id, &SettingRow::control);
  const InsertionRule rule = {row->limit, row->form == SettingForm::kDigits};
  auto* edit = new LimitedEdit(place.parent, id, rule, style);
  SetAccessibleName(*edit, wxControl::RemoveMnemonics(name));
  place.sizer->Add(edit, 0, flags);
}

void PageView::AddHexEdit(Place place, int id, const wxString& name) {
  auto* edit = new CHexEdit(place.parent, id);
  SetAccessibleName(*edit, wxControl::RemoveMnemonics(name));
  place.sizer->Add(edit, wxSizerFlags(1).CentreVertical());
}

void PageView::AddChoice(Place place, int id, const wxString& name, const wxArrayString& items) {
  auto* choice = new DropDownList(place.parent, id, wxDefaultPosition, wxDefaultSize, items);
  SetAccessibleName(*choice, wxControl::RemoveMnemonics(name));
  place.sizer->Add(choice, wxSizerFlags().CentreVertical());
}

wxSizer* PageView::MakeButtons(int default_id, int apply_id) {
  auto* buttons = new wxBoxSizer(wxHORIZONTAL);
  buttons->Add(new wxButton(this, default_id, _("&Default")), wxSizerFlags().Border(wxRIGHT));
  buttons->Add(new wxButton(this, apply_id, _("A&pply")));
  Bind(
      wxEVT_BUTTON, [this](wxCommandEvent&) { SetDefaults(); }, default_id);
  Bind(
      wxEVT_BUTTON, [this](wxCommandEvent&) { Apply(); }, apply_id);
  return buttons;
}

void PageView::Fill() {
  for (const SettingRow& row : settings_.rows()) {
    switch (row.form) {
      case SettingForm::kCheck:
        ControlOf<wxCheckBox>(*this, row.control)->SetValue(settings_.Checked(row.control));
        break;
      case SettingForm::kChoice:
      case SettingForm::kOrdinal:
        ControlOf<wxChoice>(*this, row.control)->SetSelection(settings_.Choice(row.control));
        break;
      case SettingForm::kText:
      case SettingForm::kFilledText:
      case SettingForm::kDigits:
        ControlOf<LimitedEdit>(*this, row.control)->SetText(settings_.Text(row.control));
        break;
      case SettingForm::kHex:
        ControlOf<CHexEdit>(*this, row.control)->SetText(settings_.Text(row.control));
        break;
    }
  }
}

void PageView::ReadBack() {
  for (const SettingRow& row : settings_.rows()) {
    switch (row.form) {
      case SettingForm::kCheck:
        settings_.SetChecked(row.control, ControlOf<wxCheckBox>(*this, row.control)->GetValue());
        break;
      case SettingForm::kChoice:
      case SettingForm::kOrdinal:
        settings_.SetChoice(row.control, ControlOf<wxChoice>(*this, row.control)->GetSelection());
        break;
      case SettingForm::kText:
      case SettingForm::kFilledText:
      case SettingForm::kDigits:
        ReadText(row.control);
        break;
      case SettingForm::kHex:
        settings_.SetText(row.control, ControlOf<CHexEdit>(*this, row.control)->Text());
        break;
    }
  }
}

void PageView::ReadText(int control) {
  const std::wstring text = ControlOf<LimitedEdit>(*this, control)->Text();
  // Setting a text runs the model's rules, which reading what is already known must not.
  if (text != settings_.Text(control)) settings_.SetText(control, text);
}

void PageView::SetDefaults() {
  settings_.SetDefaults();
  Fill();
}

void PageView::SaveToData() {
  ReadBack();
  settings_.Save(*document_, end_program_);
}

bool PageView::HasUnsavedChanges() {
  ReadBack();
  return settings_.changed();
}

void PageView::Apply() {
  ReadBack();
  if (const auto refusal = settings_.FindRefusal()) {
    ShowBox(wxGetTopLevelParent(this), Translated(refusal->message), BoxIcon::kExclamation);
    return FindWindow(refusal->control)->SetFocus();
  }
  settings_.Save(*document_, end_program_);
  // Shown after a failed write too, which has already been reported: the page does not learn of it.
  ShowBox(wxGetTopLevelParent(this), Translated(settings_.facts().saved), BoxIcon::kInformation);
}

}  // namespace qlx
