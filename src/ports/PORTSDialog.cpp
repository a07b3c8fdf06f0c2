#include "ports/PORTSDialog.h"

#include <utility>

#include <wx/sizer.h>

#include "controls/accessible_id.h"
#include "controls/message_box.h"
#include "controls/translation.h"
#include "demo/DemoDialog.h"
#include "ports/ConfigUsbDialog.h"
#include "ports/port_discovery.h"

namespace qlx {
namespace {

constexpr int kList = 1056;
constexpr int kConfigureButton = 1058;
constexpr int kDemoButton = 1060;
constexpr int kClearAllButton = 1030;
constexpr int kApplyButton = 1027;

struct Column {
  const char* title;
  int width;
};
constexpr Column kColumns[] = {{Translatable("Device"), 110},
                               {Translatable("COM Port"), 70},
                               {Translatable("Vendor ID"), 70},
                               {Translatable("Product ID"), 70},
                               {Translatable("Serial Number"), 150}};

constexpr const char* kRows[kDeviceKinds] = {Translatable("MSR"),
                                             Translatable("Line Display"),
                                             Translatable("iButton"),
                                             Translatable("Cash Drawer 1 (USB)"),
                                             Translatable("Cash Drawer 2 (USB)"),
                                             Translatable("Cash Drawer (PCI)"),
                                             Translatable("Printer")};

constexpr const wchar_t* kNoDocument = Translatable(L"Error loading Ports settings!\nExiting program.");
constexpr const wchar_t* kSaved = Translatable(L"Ports settings saved.");
constexpr const wchar_t* kRestartQuestion = Translatable(
    L"Configuration file changed. You must restart the services before running the Demo.\n\n"
    "Do you want to restart the services now?");

}  // namespace

PORTSDialog::PORTSDialog(wxNotebook* tabs, FatalEnd end_program)
    : SettingsPage(tabs),
      end_program_(std::move(end_program)),
      supported_(InstalledSupportedDevices()),
      devices_(platform::BindHidLibrary(), supported_),
      settings_({}),
      list_(MakeReportList(this, kList)),
      restart_progress_(*tabs, &list_->window(), [this] { OnRestarted(); }),
      restart_(platform::OpenServiceManager, restart_progress_, RestartEnd::kOnSuccess) {
  LayOut();
  BindEvents();
}

PORTSDialog::~PORTSDialog() {
  restart_progress_.Release();
}

void PORTSDialog::LayOut() {
  for (const Column& column : kColumns) list_->AddColumn(_(column.title), column.width);
  for (const char* row : kRows) list_->AddRow(_(row));
  SetAccessibleName(list_->window(), _("Devices"));
  configure_ = new wxButton(this, kConfigureButton, _("&Configure"));
  demo_ = new wxButton(this, kDemoButton, _("D&emo"));
  clear_all_ = new wxButton(this, kClearAllButton, _("Clea&r All"));
  apply_ = new wxButton(this, kApplyButton, _("A&pply"));

  auto* buttons = new wxBoxSizer(wxHORIZONTAL);
  buttons->Add(configure_, wxSizerFlags().Border(wxRIGHT));
  buttons->Add(demo_);
  buttons->AddStretchSpacer();
  buttons->Add(clear_all_, wxSizerFlags().Border(wxLEFT | wxRIGHT));
  buttons->Add(apply_);
  auto* page = new wxBoxSizer(wxVERTICAL);
  page->Add(&list_->window(), wxSizerFlags(1).Expand().Border(wxALL));
  page->Add(buttons, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM));
  SetSizer(page);
}

void PORTSDialog::BindEvents() {
  list_->OnSelection([this] { UpdateButtons(); });
  list_->OnDoubleClick([this](int row) {
    if (!settings_.PortOf(static_cast<DeviceKind>(row)).empty()) Demo();
  });
  configure_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Configure(); });
  demo_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Demo(); });
  clear_all_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { ClearAll(); });
  apply_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Apply(); });
}

void PORTSDialog::Initialise(ConfigDocument* document, bool editable) {
  if (document == nullptr) return end_program_(kNoDocument);
  settings_ = PORTSSettings(DiscoverPorts(*platform::VirtualPortInterfaces()));
  document_ = document;
  editable_ = editable;
  clear_all_->Enable(editable);
  apply_->Enable(editable);
  settings_.Load(document_->ReadSection(L"Ports_Configuration"));
  Fill();
  UpdateButtons();
  PublishIds(*this);
}

void PORTSDialog::SaveToData() {
  settings_.Save(*document_);
}

void PORTSDialog::Fill() {
  for (int row = 0; row < kDeviceKinds; ++row) {
    const PortRow& device = settings_.row(static_cast<DeviceKind>(row));
    list_->SetCell(row, 1, device.port);
    list_->SetCell(row, 2, device.usb.vendor);
    list_->SetCell(row, 3, device.usb.product);
    list_->SetCell(row, 4, device.usb.serial);
  }
}

std::optional<DeviceKind> PORTSDialog::SelectedKind() const {
  const auto row = list_->SelectedRow();
  return row ? std::optional(static_cast<DeviceKind>(*row)) : std::nullopt;
}

void PORTSDialog::UpdateButtons() {
  const auto kind = SelectedKind();
  configure_->Enable(kind && editable_);
  demo_->Enable(kind && !settings_.PortOf(*kind).empty());
}

void PORTSDialog::Configure() {
  const auto kind = SelectedKind();
  if (!kind) return;
  devices_.Refresh();  // one that failed leaves the lists shorter, and "Auto" to choose
  const bool drawers = *kind == kCashDrawer1 || *kind == kCashDrawer2;
  const DeviceKind first = drawers ? kCashDrawer1 : *kind;
  UsbSelection selection(*kind, settings_.ports(), devices_.ForKind(*kind), supported_,
                         {settings_.row(first).port, settings_.row(first).usb,
                          drawers ? settings_.row(kCashDrawer2).usb : UsbIdentity{}});
  if (ConfigUsbDialog(wxGetTopLevelParent(this), *kind, selection).ShowModal() != wxID_OK) return;
  const UsbChoice choice = selection.Result();
  settings_.Configure(*kind, {choice.port, choice.first}, choice.second);
  Fill();
  SaveToData();
  UpdateButtons();
}

void PORTSDialog::Demo() {
  if (!SelectedKind()) return;
  if (!document_->changed()) return OpenDemo();
  if (AskYesNo(wxGetTopLevelParent(this), Translated(kRestartQuestion)).value_or(false)) restart_.Start();
}

void PORTSDialog::OpenDemo() {
  const auto kind = SelectedKind();
  if (kind) DemoDialog(wxGetTopLevelParent(this), *kind, settings_.PortOf(*kind)).ShowModal();
}

void PORTSDialog::ClearAll() {
  settings_.Clear();
  Fill();
}

void PORTSDialog::Apply() {
  SaveToData();
  // Shown after a failed write too, which has already been reported: the page does not learn of it.
  ShowBox(wxGetTopLevelParent(this), Translated(kSaved), BoxIcon::kInformation);
}

void PORTSDialog::OnRestarted() {
  document_->ClearChanged();
  // Not from within the worker's report: the restart is over once that has returned.
  CallAfter(&PORTSDialog::OpenDemo);
}

}  // namespace qlx
