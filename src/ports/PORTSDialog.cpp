#include "ports/PORTSDialog.h"

#include <chrono>
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

// Read after the device's name.
constexpr const wchar_t* kAbsent = Translatable(L"%s is not present.");
constexpr const wchar_t* kAbsentAtStart = Translatable(L"%s was not present at the start. Saving clears it.");
constexpr std::size_t kLongestPort = 32;  // of what a file may hold in a port's place
constexpr int kAbsentCharacters = 72;     // of a line, as the rows are wide

constexpr std::chrono::seconds kPortsPause{2};

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
  absent_ports_ = new wxStaticText(this, wxID_ANY, "");
  page->Add(absent_ports_, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM));
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
  present_ports_ = DiscoverPorts(*platform::VirtualPortInterfaces());
  settings_ = PORTSSettings(present_ports_);
  document_ = document;
  editable_ = editable;
  clear_all_->Enable(editable);
  apply_->Enable(editable);
  settings_.Load(document_->ReadSection(L"Ports_Configuration"));
  Fill();
  UpdateButtons();
  PublishIds(*this);
  WatchPorts();
}

void PORTSDialog::SaveToData() {
  settings_.Save(*document_);
  TellAbsentPorts();
}

void PORTSDialog::Fill() {
  for (int row = 0; row < kDeviceKinds; ++row) {
    const PortRow& device = settings_.row(static_cast<DeviceKind>(row));
    list_->SetCell(row, 1, device.port);
    list_->SetCell(row, 2, device.usb.vendor);
    list_->SetCell(row, 3, device.usb.product);
    list_->SetCell(row, 4, device.usb.serial);
  }
  TellAbsentPorts();
}

void PORTSDialog::WatchPorts() {
  const std::shared_ptr<platform::DeviceInterfaces> interfaces = platform::VirtualPortInterfaces();
  watch_ = std::make_unique<DeviceWatch>([interfaces] { return PresentDevices{DiscoverPorts(*interfaces)}; },
                                         [this](const PresentDevices& present) {
                                           calls_.Post([this, ports = present.ports] {
                                             present_ports_ = ports;
                                             TellAbsentPorts();
                                           });
                                         },
                                         kPortsPause);
}

void PORTSDialog::TellAbsentPorts() {
  const wxString words = AbsentPortsInWords();
  absent_ports_->SetLabelText(words);
  absent_ports_->Wrap(kAbsentCharacters * GetCharWidth());
  absent_ports_->Show(!words.empty());
  SetAccessibleDescription(list_->window(), words);
  if (IsShownOnScreen()) Layout();  // before that the page has no size to lay anything out in
}

wxString PORTSDialog::AbsentPortsInWords() const {
  wxString words;
  for (const AbsentPort& absent : settings_.AbsentPorts(present_ports_)) {
    if (!words.empty()) words += "\n";
    words += _(kRows[static_cast<std::size_t>(absent.kind)]) + ": " +
             Translated(Message{absent.kept ? kAbsent : kAbsentAtStart, absent.port.substr(0, kLongestPort)});
  }
  return words;
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
  if (ConfigUsbDialog(wxGetTopLevelParent(this), *kind, selection, LookFor(*kind)).ShowModal() != wxID_OK)
    return;
  const UsbChoice choice = selection.Result();
  settings_.Configure(*kind, {choice.port, choice.first}, choice.second);
  Fill();
  SaveToData();
  UpdateButtons();
}

/// Uses the page's own list of devices, which the page leaves alone as long as the window is open.
DeviceWatch::Look PORTSDialog::LookFor(DeviceKind kind) {
  return [this, kind, ports = std::shared_ptr(platform::VirtualPortInterfaces()),
          devices = devices_.ForKind(kind)]() mutable {
    // A walk that a device's coming or going has broken off says nothing about the others.
    if (devices_.Refresh()) devices = devices_.ForKind(kind);
    return PresentDevices{DiscoverPorts(*ports), devices};
  };
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
