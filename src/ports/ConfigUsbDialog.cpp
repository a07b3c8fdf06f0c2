#include "ports/ConfigUsbDialog.h"

#include <utility>

#include <wx/button.h>

#include "controls/DropDownList.h"
#include "controls/accessible_id.h"
#include "controls/mnemonics.h"
#include "controls/translation.h"
#include "controls/window_icons.h"
#include "ports/list_changes.h"

namespace qlx {
namespace {

constexpr int kPortCaption = 1088;
constexpr int kPort = 1051;
constexpr int kOk = 1;
constexpr int kCancel = 2;

constexpr const char* kCaptions[] = {Translatable("Vendor ID:"), Translatable("Product ID:"),
                                     Translatable("Serial Number:")};
constexpr std::size_t kSerialColumns = 16;  // that are seen at once

}  // namespace

ConfigUsbDialog::ConfigUsbDialog(wxWindow* parent, DeviceKind kind, UsbSelection& selection,
                                 DeviceWatch::Look look)
    : wxDialog(parent, wxID_ANY, Translated(LookOf(kind).title)),
      kind_(kind),
      selection_(selection),
      watch_(std::move(look), [this](const PresentDevices& present) {
        calls_.Post([this, present] { TakePresent(present); });
      }) {
  TakeParentIcons(*this);
  constexpr GroupIds kFirst = {1063, 1061, {1089, 1090, 1091}, {1052, 1053, 1054}};
  constexpr GroupIds kSecond = {1064, 1062, {1092, 1093, 1094}, {1055, 1057, 1059}};
  const UsbSelectionLook& texts = LookOf(kind);

  auto* frame = new wxBoxSizer(wxVERTICAL);
  frame->Add(MakePort(), wxSizerFlags().Centre().DoubleBorder(wxALL));
  // A single group stands in the middle, under the port.
  auto* groups = new wxBoxSizer(wxHORIZONTAL);
  groups->Add(MakeGroup(first_, kFirst, Translated(texts.first_label)), wxSizerFlags().Border(wxALL));
  if (!texts.second_label.empty()) {
    groups->Add(MakeGroup(second_, kSecond, Translated(texts.second_label)), wxSizerFlags().Border(wxALL));
  }
  frame->Add(groups, wxSizerFlags().Centre().Border(wxLEFT | wxRIGHT));
  frame->Add(MakeButtons(), wxSizerFlags().Right().DoubleBorder(wxALL));
  SetSizer(frame);
  Fill();
  Fit();
  CentreOnParent();
  BindEvents();
  PublishIds(*this);
  ServeMnemonics(*this);
}

wxSizer* ConfigUsbDialog::MakePort() {
  auto* grid = new wxFlexGridSizer(2, wxSize(GetCharWidth(), 0));
  grid->Add(new wxStaticText(this, kPortCaption, _("COM &Port:")), wxSizerFlags().CentreVertical());
  port_ = new DropDownList(this, kPort);
  SetAccessibleName(*port_, wxControl::RemoveMnemonics(_("COM &Port:")));
  grid->Add(port_, wxSizerFlags().Expand());
  grid->AddSpacer(0);
  port_absence_ = MakeAbsence();
  grid->Add(port_absence_, wxSizerFlags().ReserveSpaceEvenIfHidden());
  return grid;
}

wxSizer* ConfigUsbDialog::MakeGroup(Group& group, const GroupIds& ids, const wxString& label) {
  auto* grid = new wxFlexGridSizer(2, wxSize(GetCharWidth(), GetCharHeight() / 3));
  grid->Add(new wxStaticText(this, ids.label, label), wxSizerFlags().CentreVertical());
  group.devices = new DropDownList(this, ids.devices);
  const wxString name = wxControl::RemoveMnemonics(label);
  SetAccessibleName(*group.devices, name);
  grid->Add(group.devices, wxSizerFlags().Expand());
  for (std::size_t row = 0; row < group.texts.size(); ++row) {
    grid->Add(new wxStaticText(this, ids.captions[row], _(kCaptions[row])), wxSizerFlags().CentreVertical());
    auto* text = new LimitedEdit(this, ids.texts[row], {kSerialColumns}, wxTE_READONLY);
    SetAccessibleName(*text, name + " " + _(kCaptions[row]));
    grid->Add(text, wxSizerFlags().Expand());
    group.texts[row] = text;
  }
  grid->AddSpacer(0);
  group.absence = MakeAbsence();
  grid->Add(group.absence, wxSizerFlags().ReserveSpaceEvenIfHidden());
  return grid;
}

wxStaticText* ConfigUsbDialog::MakeAbsence() {
  auto* absence = new wxStaticText(this, wxID_ANY, _("Not present"));
  absence->Hide();
  return absence;
}

wxSizer* ConfigUsbDialog::MakeButtons() {
  auto* ok = new wxButton(this, kOk, _("&OK"));
  auto* cancel = new wxButton(this, kCancel, _("&Cancel"));
  ok->SetDefault();
  SetEscapeId(kCancel);
  ok->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { EndModal(wxID_OK); });
  cancel->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { EndModal(wxID_CANCEL); });
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(ok, wxSizerFlags().Border(wxRIGHT));
  row->Add(cancel);
  return row;
}

void ConfigUsbDialog::BindEvents() {
  port_->Bind(wxEVT_CHOICE, [this](wxCommandEvent& event) {
    selection_.ChoosePort(static_cast<std::size_t>(event.GetSelection()));
    Fill();
  });
  first_.devices->Bind(wxEVT_CHOICE, [this](wxCommandEvent& event) {
    selection_.ChooseFirst(static_cast<std::size_t>(event.GetSelection()));
    Fill();
  });
  if (second_.devices == nullptr) return;
  second_.devices->Bind(wxEVT_CHOICE, [this](wxCommandEvent& event) {
    selection_.ChooseSecond(static_cast<std::size_t>(event.GetSelection()));
    Fill();
  });
}

void ConfigUsbDialog::TakePresent(const PresentDevices& present) {
  selection_.TakePresent(present.ports, present.devices);
  Fill();
  Fit();  // a new port's name may be longer
}

void ConfigUsbDialog::Fill() {
  ShowItems(*port_, selection_.ports(), selection_.port_item());
  TellPresence(*port_, *port_absence_, selection_.port_present());
  Fill(first_, selection_.first_item(), selection_.first(), LookOf(kind_).devices_enabled);
  TellPresence(*first_.devices, *first_.absence, selection_.first_present());
  if (second_.devices == nullptr) return;
  Fill(second_, selection_.second_item(), selection_.second(), selection_.second_enabled());
  TellPresence(*second_.devices, *second_.absence, selection_.second_present());
}

void ConfigUsbDialog::Fill(Group& group, std::size_t item, const UsbIdentity& identity, bool enabled) {
  std::vector<std::wstring> items = selection_.DeviceItems();
  for (std::wstring& text : items) text = Translated(text);
  ShowItems(*group.devices, items, item);
  group.devices->Enable(enabled);
  const std::wstring* const texts[] = {&identity.vendor, &identity.product, &identity.serial};
  for (std::size_t row = 0; row < group.texts.size(); ++row) {
    group.texts[row]->SetText(*texts[row]);
    group.texts[row]->Enable(enabled);
  }
}

/// Touches only what changes: a list that is open under the user's hand stays so.
void ConfigUsbDialog::ShowItems(wxChoice& list, const std::vector<std::wstring>& items,
                                std::optional<std::size_t> chosen) {
  std::vector<std::wstring> shown;
  for (unsigned item = 0; item < list.GetCount(); ++item)
    shown.push_back(list.GetString(item).ToStdWstring());
  for (const ListChange& change : ChangesBetween(std::move(shown), items)) {
    if (change.kind == ListChange::Kind::kInsert) {
      list.Insert(change.text, static_cast<unsigned>(change.at));
    } else {
      list.Delete(static_cast<unsigned>(change.at));
    }
  }
  const int selection = chosen ? static_cast<int>(*chosen) : wxNOT_FOUND;
  if (list.GetSelection() != selection) list.SetSelection(selection);
}

void ConfigUsbDialog::TellPresence(wxChoice& list, wxStaticText& absence, bool present) {
  absence.Show(!present);
  SetAccessibleDescription(list, present ? wxString() : absence.GetLabel());
}

}  // namespace qlx
