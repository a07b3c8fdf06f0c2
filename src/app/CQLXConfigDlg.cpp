#include "app/CQLXConfigDlg.h"

#include <chrono>
#include <optional>

#include <wx/button.h>
#include <wx/sizer.h>

#include "app/CAboutDlg.h"
#include "app/EndProgram.h"
#include "app/StatusLine.h"
#include "app/program_icon.h"
#include "config/save_error.h"
#include "config/start_up.h"
#include "controls/Banner.h"
#include "controls/accessible_id.h"
#include "controls/message_box.h"
#include "controls/mnemonics.h"
#include "controls/translation.h"
#include "log/LogMessage.h"
#include "pages/IBDialog.h"
#include "pages/LOGDialog.h"
#include "pages/MSRDialog.h"
#include "pages/PRINTERDialog.h"
#include "platform/user_rights.h"
#include "ports/PORTSDialog.h"

namespace qlx {
namespace {

constexpr int kTabControl = 1000;
constexpr int kApplyAllButton = 1031;
constexpr int kReadOnlyText = 2004;
constexpr int kAboutCommand = 0x0010;
constexpr int kPrinterTab = 4;
constexpr int kBannerCharacters = 60;
constexpr std::chrono::milliseconds kAnswerTime{1500};

constexpr const wchar_t* kNoRights = Translatable(
    L"You do not have sufficient permissions.\n"
    "Please run the application as Administrator if you need to change the settings.");
constexpr const wchar_t* kRestartQuestion = Translatable(
    L"Configuration file changed. You must restart the services for the configuration to take effect.\n\n"
    "Do you want to restart the services now?");

void LogPrinterPortNotOpened(const char* place) {
  LogMessage(MZP_PRINTER, LEVEL_ERROR, "%s Couldn't open COM port. Maybe not configured.", place);
}

}  // namespace

CQLXConfigDlg::CQLXConfigDlg()
    : wxDialog(nullptr, wxID_ANY, Translated(kProgramTitle), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxMINIMIZE_BOX),
      tabs_(new wxNotebook(this, kTabControl)),
      marks_(*tabs_),
      editable_(platform::MayChangeSettings()),
      restart_progress_(*this, nullptr, [this] { EndModal(wxID_CANCEL); }),
      restart_(platform::OpenServiceManager, restart_progress_, RestartEnd::kAlways) {
  SetIcons(ProgramIcons());
  MakePages();
  LayOut();
  LoadDocument();
  InitialisePages();
  BindEvents();
}

CQLXConfigDlg::~CQLXConfigDlg() {
  restart_progress_.Release();
  calls_.Close();
  // The pages were lent the document, which would otherwise go first.
  DestroyChildren();
}

std::wstring_view CQLXConfigDlg::help_chapter() const {
  return pages_[static_cast<std::size_t>(tabs_->GetSelection())]->help_chapter();
}

void CQLXConfigDlg::MakePages() {
  ports_ = new PORTSDialog(tabs_, EndProgram);
  auto* logging = new LOGDialog(tabs_, EndProgram);
  auto* msr = new MSRDialog(tabs_, EndProgram);
  auto* ibutton = new IBDialog(tabs_, EndProgram);
  printer_ = new PRINTERDialog(tabs_, EndProgram);
  pages_ = {ports_, logging, msr, ibutton, printer_};
  tabs_->AddPage(ports_, _("COM Ports"));
  tabs_->AddPage(logging, _("Logging"));
  tabs_->AddPage(msr, _("MSR"));
  tabs_->AddPage(ibutton, _("iButton"));
  tabs_->AddPage(printer_, _("Printer"));
  SetAccessibleName(*tabs_, _("Pages"));
}

void CQLXConfigDlg::LayOut() {
  auto* buttons = new wxBoxSizer(wxHORIZONTAL);
  auto* about = new wxButton(this, kAboutCommand, _("&About Configuration Tool..."));
  buttons->Add(about);
  asking_ = new wxStaticText(this, wxID_ANY, _("Asking the printer..."));
  asking_->Hide();
  buttons->Add(asking_, wxSizerFlags().CentreVertical().Border(wxLEFT).ReserveSpaceEvenIfHidden());
  buttons->AddStretchSpacer();
  apply_all_ = new wxButton(this, kApplyAllButton, _("Apply A&ll"));
  buttons->Add(apply_all_);

  auto* frame = new wxBoxSizer(wxVERTICAL);
  if (!editable_) frame->Add(ReadOnlyBanner(), wxSizerFlags().Expand().Border(wxLEFT | wxTOP | wxRIGHT));
  frame->Add(tabs_, wxSizerFlags(1).Expand().Border(wxALL));
  frame->Add(buttons, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM));
  status_ = new StatusLine(this);
  frame->Add(status_, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM));
  SetSizerAndFit(frame);
  Centre();
}

wxWindow* CQLXConfigDlg::ReadOnlyBanner() {
  return new Banner(this, kReadOnlyText,
                    _("Read only: this program runs without the rights to change settings. To change them, "
                      "close it and start it as administrator (root)."),
                    kBannerCharacters);
}

void CQLXConfigDlg::BindEvents() {
  tabs_->Bind(wxEVT_NOTEBOOK_PAGE_CHANGED,
              [this](wxBookCtrlEvent& event) { OnTabChanged(event.GetSelection()); });
  Bind(
      wxEVT_BUTTON, [this](wxCommandEvent&) { CAboutDlg(this).ShowModal(); }, kAboutCommand);
  Bind(
      wxEVT_BUTTON, [this](wxCommandEvent&) { OnApplyAll(); }, kApplyAllButton);
  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { OnCancel(); });
  Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_ESCAPE) {
      OnCancel();
    } else {
      event.Skip();
    }
  });
  Bind(wxEVT_IDLE, [this](wxIdleEvent& event) {
    event.Skip();
    OnIdle();
  });
  Bind(wxEVT_SHOW, [this](wxShowEvent& event) {
    event.Skip();
    if (event.IsShown()) CallAfter(&CQLXConfigDlg::OnShown);
  });
}

void CQLXConfigDlg::LoadDocument() {
  document_ = MakeConfigDocument([this](const std::wstring& path) {
    const auto show = [&] {
      ShowBox(this, SaveErrorText(Translated(kSaveErrorSentence), path), BoxIcon::kError,
              Translated(kSaveErrorTitle));
    };
    if (wxIsMainThread()) return show();
    calls_.Run(show);
  });
  StartUpLoad(*document_, platform::ThisProgram(), platform::SystemDebugOutput(), EndProgram);
}

void CQLXConfigDlg::InitialisePages() {
  for (SettingsPage* page : pages_) page->Initialise(document_.get(), editable_);
  ServeMnemonics(*this);
  apply_all_->Enable(editable_);
  status_->ShowFile(document_->path());
  PublishIds(*this);
}

void CQLXConfigDlg::OnShown() {
  if (shown_) return;
  shown_ = true;
  status_->AskForServices();
  if (!editable_) ShowBox(this, Translated(kNoRights), BoxIcon::kExclamation);
  QueryPrinterAtStart();
}

/// Once the toolkit has nothing else to do, which is after every event: whatever made the change, it shows.
void CQLXConfigDlg::OnIdle() {
  if (was_busy_ && !busy()) status_->AskForServices();  // a restart may have ended
  was_busy_ = busy();
  if (was_busy_) return;
  marks_.Update();
  status_->ShowUnsaved(marks_.Marked());
}

void CQLXConfigDlg::OnTabChanged(int tab) {
  tabs_->SetFocus();
  if (asking_->IsShown())
    return;  // automation reaches the tabs of a window without input too: see WhileAsking
  printer_->ClosePort();
  if (tab == kPrinterTab) CallAfter(&CQLXConfigDlg::QueryPrinterForTab);
}

void CQLXConfigDlg::QueryPrinterAtStart() {
  if (!printer_->OpenPort()) return LogPrinterPortNotOpened("QLXConfigDlg::OnInitDialog()");
  WhileAsking([this](BusyWindow& window) {
    printer_->RequestDeviceInformation();
    window.Wait(kAnswerTime);
    information_requested_ = true;
    window.Wait(kAnswerTime);
    printer_->ClosePort();
  });
}

void CQLXConfigDlg::QueryPrinterForTab() {
  if (asking_->IsShown() || tabs_->GetSelection() != kPrinterTab) return;
  if (!printer_->OpenPort()) return LogPrinterPortNotOpened("QLXConfigDlg::OnTcnSelchangeTabMzp()");
  WhileAsking([this](BusyWindow& window) {
    if (!information_requested_) {
      printer_->RequestDeviceInformation();
      window.Wait(kAnswerTime);
      information_requested_ = true;
    }
    if (!code_pages_requested_) {
      printer_->RequestCodePages();
      window.Wait(kAnswerTime);
      code_pages_requested_ = true;
    }
  });
}

void CQLXConfigDlg::WhileAsking(const std::function<void(BusyWindow&)>& ask) {
  const int tab = tabs_->GetSelection();
  asking_->Show();
  {
    BusyWindow window(*this);
    ask(window);
  }
  asking_->Hide();
  if (tabs_->GetSelection() != tab) OnTabChanged(tabs_->GetSelection());
}

bool CQLXConfigDlg::busy() const {
  return restart_.running() || ports_->restarting() || printer_->saving() || asking_->IsShown();
}

void CQLXConfigDlg::OnApplyAll() {
  if (busy() || !editable_) return;  // its key is not grey
  for (SettingsPage* page : pages_) page->SaveToData();
  ShowBox(this, _("All settings saved.").ToStdWstring(), BoxIcon::kInformation);
}

void CQLXConfigDlg::OnCancel() {
  // A window manager may ask for the close even while a box is open over the window.
  if (busy() || modal_depth_.count() > 1) return;
  if (!document_->changed()) return EndModal(wxID_CANCEL);
  const std::optional<bool> restart = AskYesNo(this, Translated(kRestartQuestion));
  if (!restart) return;  // neither Yes nor No: the window stays
  if (*restart) {
    restart_.Start();
  } else {
    EndModal(wxID_CANCEL);
  }
}

}  // namespace qlx
