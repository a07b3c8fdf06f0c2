#include "ports/ConfigUsbDialog.h"

#include <wx/button.h>
#include <wx/stattext.h>

#include "controls/DropDownList.h"
#include "controls/accessible_id.h"
#include "controls/translation.h"

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

ConfigUsbDialog::ConfigUsbDialog(wxWindow* parent, DeviceKind kind, UsbSelection& selection)
    : wxDialog(parent, wxID_ANY, Translated(LookOf(kind).title)), kind_(kind), selection_(selection) {
  constexpr GroupIds kFirst = {1063, 1061, {1089, 1090, 1091}, {1052, 1053, 1054}};
  constexpr GroupIds kSecond = {1064, 1062, {1092, 1093, 1094}, {1055, 1057, 1059}};
  const UsbSelectionLook& look = LookOf(kind);

  auto* frame = new wxBoxSizer(wxVERTICAL);
  frame->Add(MakePort(), wxSizerFlags().Centre().DoubleBorder(wxALL));
  // A single group stands in the middle, under the port.
  auto* groups = new wxBoxSizer(wxHORIZONTAL);
  groups->Add(MakeGroup(first_, kFirst, Translated(look.first_label)), wxSizerFlags().Border(wxALL));
  if (!look.second_label.empty()) {
    groups->Add(MakeGroup(second_, kSecond, Translated(look.second_label)), wxSizerFlags().Border(wxALL));
  }
  frame->Add(groups, wxSizerFlags().Centre().Border(wxLEFT | wxRIGHT));
  frame->Add(MakeButtons(), wxSizerFlags().Right().DoubleBorder(wxALL));
  SetSizerAndFit(frame);
  CentreOnParent();
  Fill();
  BindEvents();
  PublishIds(*this);
}

wxSizer* ConfigUsbDialog::MakePort() {
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(new wxStaticText(this, kPortCaption, _("COM Port:")),
           wxSizerFlags().CentreVertical().Border(wxRIGHT));
  port_ = new DropDownList(this, kPort);
  for (const std::wstring& port : selection_.ports()) port_->Append(port);
  SetAccessibleName(*port_, _("COM Port:"));
  row->Add(port_, wxSizerFlags().CentreVertical());
  return row;
}

wxSizer* ConfigUsbDialog::MakeGroup(Group& group, const GroupIds& ids, const wxString& label) {
  auto* grid = new wxFlexGridSizer(2, wxSize(GetCharWidth(), GetCharHeight() / 3));
  grid->Add(new wxStaticText(this, ids.label, label), wxSizerFlags().CentreVertical());
  group.devices = new DropDownList(this, ids.devices);
  for (const std::wstring& item : selection_.DeviceItems()) group.devices->Append(Translated(item));
  SetAccessibleName(*group.devices, label);
  grid->Add(group.devices, wxSizerFlags().Expand());
  for (std::size_t row = 0; row < group.texts.size(); ++row) {
    grid->Add(new wxStaticText(this, ids.captions[row], _(kCaptions[row])), wxSizerFlags().CentreVertical());
    auto* text = new LimitedEdit(this, ids.texts[row], {kSerialColumns}, wxTE_READONLY);
    SetAccessibleName(*text, label + " " + _(kCaptions[row]));
    grid->Add(text, wxSizerFlags().Expand());
    group.texts[row] = text;
  }
  return grid;
}

wxSizer* ConfigUsbDialog::MakeButtons() {
  auto* ok = new wxButton(this, kOk, _("OK"));
  auto* cancel = new wxButton(this, kCancel, _("Cancel"));
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

void ConfigUsbDialog::Fill() {
  const auto port = selection_.port_item();
  port_->SetSelection(port ? static_cast<int>(*port) : wxNOT_FOUND);
  Fill(first_, selection_.first_item(), selection_.first(), LookOf(kind_).devices_enabled);
  if (second_.devices == nullptr) return;
  Fill(second_, selection_.second_item(), selection_.second(), selection_.second_enabled());
}

void ConfigUsbDialog::Fill(Group& group, std::size_t item, const UsbIdentity& identity, bool enabled) {
  group.devices->SetSelection(static_cast<int>(item));
  group.devices->Enable(enabled);
  const std::wstring* const texts[] = {&identity.vendor, &identity.product, &identity.serial};
  for (std::size_t row = 0; row < group.texts.size(); ++row) {
    group.texts[row]->SetText(*texts[row]);
    group.texts[row]->Enable(enabled);
  }
}

}  // namespace qlx
