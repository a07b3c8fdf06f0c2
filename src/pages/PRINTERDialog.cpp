#include "pages/PRINTERDialog.h"

#include <utility>

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/hyperlink.h>
#include <wx/log.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/utils.h>

#include "controls/DropDownList.h"
#include "controls/accessible_id.h"
#include "controls/message_box.h"
#include "controls/tool_tips.h"
#include "controls/translation.h"
#include "log/levels.h"
#include "pages/PageView.h"
#include "pages/printer_hidden_controls.h"

namespace qlx {
namespace {

constexpr int kCodePageLabel = 1087;
constexpr int kCodePage = 1074;
constexpr int kEmulation = 1075;
constexpr int kUnsolicitedStatus = 1096;
constexpr int kLink = 1095;
constexpr int kDefaultButton = 1072;
constexpr int kApplyButton = 1073;

constexpr Term kTerms[] = {
    {kCodePage, Translatable("Which characters the printer has.")},
    {kEmulation, Translatable("Which printer's commands the applications send.")},
    {kUnsolicitedStatus, Translatable("The printer tells of a change by itself, without being asked.")},
};

constexpr char kHomePage[] = "https://www.harlune.example";
constexpr char kSupportPage[] = "https://support.harlune.example";

/// Ends with this word on purpose: the line that goes on with it has the link.
constexpr const char* kNote = Translatable(
    // TRANSLATORS: the last word goes on with "Download the utility from"; put it there if that reads better.
    "Note:\nPlease use the Harlune Mirel Printer Configuration Utility for other printer configurations.\n"
    "The utility provides a rich set of features including: firmware download, font download, bitmap "
    "download, paper saving options and paper sensing settings.\nThe");

constexpr const char* kNotAnswered = Translatable(
    "The printer has not answered: these are standard values, not the stored ones.\n"
    "Apply stores what is shown here.");

constexpr const wchar_t* kNoDocument =
    Translatable(L"Error loading Log settings!\nExiting program.");  // the Logging page's words
constexpr const wchar_t* kNoBrowser = Translatable(L"No web browser could be started.\nThe page is %s");
constexpr const wchar_t* kSaved = Translatable(L"Printer settings saved.");

wxArrayString Items(const std::vector<std::wstring>& items) {
  wxArrayString strings;
  strings.Alloc(items.size());
  for (const std::wstring& item : items) strings.Add(Translated(item));
  return strings;
}

}  // namespace

PRINTERDialog::PRINTERDialog(wxWindow* parent, FatalEnd end_program)
    : SettingsPage(parent),
      end_program_(std::move(end_program)),
      logo_controls_(this, logos_, end_program_, ChooseLogoFile(this)),
      log_(ThisPrinterLog()),
      query_(
          settings_, platform::OpenSerialPort, log_, [this] { calls_.Post([this] { ShowAnswers(); }); },
          ServePainting) {
  MakeControls();
  MakeHiddenPrinterControls(this);
  LayOut();
  ExplainTerms(*this, kTerms);
  BindEvents();
}

PRINTERDialog::~PRINTERDialog() {
  query_.Close();
  calls_.Close();
  if (saver_.joinable()) saver_.join();
  logos_.DeleteTempImages(end_program_);
}

/// In tab order.
void PRINTERDialog::MakeControls() {
  code_page_ =
      new DropDownList(this, kCodePage, wxDefaultPosition, wxDefaultSize, Items(settings_.code_page().items));
  SetAccessibleName(*code_page_, wxControl::RemoveMnemonics(_("Set &Code Page:")));
  emulation_ = new DropDownList(this, kEmulation, wxDefaultPosition, wxDefaultSize,
                                Items(settings_.emulation().items));
  SetAccessibleName(*emulation_, wxControl::RemoveMnemonics(_("Programming &Interface:")));
  link_ = new wxHyperlinkCtrl(this, kLink, kSupportPage, kHomePage);
  new wxButton(this, kDefaultButton, _("&Default"));
  unsolicited_status_ = new wxCheckBox(this, kUnsolicitedStatus, _("&Unsolicited Status"));
  new wxButton(this, kApplyButton, _("A&pply"));
}

void PRINTERDialog::LayOut() {
  auto* note = new wxStaticText(this, wxID_ANY, _(kNote));
  note->Wrap(kNoteCharacters * GetCharWidth());
  auto* link = new wxBoxSizer(wxHORIZONTAL);
  link->Add(new wxStaticText(this, wxID_ANY, _("Download the utility from ")),
            wxSizerFlags().CentreVertical());
  link->Add(link_, wxSizerFlags().CentreVertical());
  link->Add(new wxStaticText(this, wxID_ANY, _(".")), wxSizerFlags().CentreVertical());
  auto* buttons = new wxBoxSizer(wxHORIZONTAL);
  buttons->Add(FindWindow(kDefaultButton), wxSizerFlags().Border(wxRIGHT));
  buttons->Add(FindWindow(kApplyButton));

  auto* page = new wxBoxSizer(wxVERTICAL);
  page->Add(LayOutSetup(), wxSizerFlags().Expand().Border(wxALL));
  page->Add(note, wxSizerFlags().Border(wxLEFT | wxRIGHT));
  page->Add(link, wxSizerFlags().Border(wxLEFT | wxRIGHT));
  page->AddStretchSpacer();
  page->Add(buttons, wxSizerFlags().Right().Border(wxALL));
  SetSizer(page);
}

wxSizer* PRINTERDialog::LayOutSetup() {
  auto* group = new wxStaticBoxSizer(wxVERTICAL, this, _("Printer Setup"));
  auto* grid = new wxFlexGridSizer(2, wxSize(GetCharWidth(), GetCharHeight() / 3));
  const auto add = [&](int label_id, const wxString& label, wxWindow* control) {
    auto* text = new wxStaticText(this, label_id, label);
    text->MoveBeforeInTabOrder(control);  // its mnemonic leads to the control behind it
    grid->Add(text, wxSizerFlags().CentreVertical());
    grid->Add(control, wxSizerFlags().CentreVertical());
  };
  add(kCodePageLabel, _("Set &Code Page:"), code_page_);
  add(wxID_ANY, _("Programming &Interface:"), emulation_);
  grid->AddSpacer(0);
  grid->Add(unsolicited_status_);
  group->Add(grid, wxSizerFlags().Border(wxALL));
  state_ = new wxStaticText(this, wxID_ANY, _(kNotAnswered));
  state_->Wrap(kNoteCharacters * GetCharWidth());
  group->Add(state_, wxSizerFlags().Border(wxALL).ReserveSpaceEvenIfHidden());
  return group;
}

void PRINTERDialog::BindEvents() {
  emulation_->Bind(wxEVT_CHOICE, [this](wxCommandEvent& event) {
    ReadBack();
    settings_.ChooseEmulation(event.GetSelection());
    Fill();
  });
  link_->Bind(wxEVT_HYPERLINK, [this](wxHyperlinkEvent&) { OpenWebPage(); });
  Bind(
      wxEVT_BUTTON,
      [this](wxCommandEvent&) {
        ReadBack();
        settings_.SetDefaults();
        Fill();
      },
      kDefaultButton);
  Bind(
      wxEVT_BUTTON, [this](wxCommandEvent&) { Apply(); }, kApplyButton);
}

void PRINTERDialog::Initialise(ConfigDocument* document, bool editable) {
  if (document == nullptr) {
    log_.line(LEVEL_ERROR, "PRINTERDialog::Initialize - Error loading Log settings");
    return end_program_(kNoDocument);
  }
  document_ = document;
  settings_.Load(document_->ReadSection(L"Ports_Configuration"),
                 document_->ReadSection(std::wstring(PRINTERSettings::kSection)));
  logos_.Load(*document_);
  logo_controls_.Fill();
  Fill();
  PublishIds(*this);
  if (!editable) Disable();
}

void PRINTERDialog::Fill() {
  code_page_->Set(Items(settings_.code_page().items));
  code_page_->SetSelection(settings_.code_page().chosen);
  emulation_->SetSelection(settings_.emulation().chosen);
  unsolicited_status_->SetValue(settings_.unsolicited_status());
  state_->Show(!settings_.shows_stored());
}

void PRINTERDialog::ReadBack() {
  settings_.ChooseCodePage(code_page_->GetSelection());
  settings_.SetUnsolicitedStatus(unsolicited_status_->GetValue());
}

void PRINTERDialog::ClosePort() {
  query_.Close();
  ShowAnswers();
}

void PRINTERDialog::RequestCodePages() {
  query_.RequestCodePages();
  Fill();
}

void PRINTERDialog::ShowAnswers() {
  ReadBack();
  if (query_.TakeAnswers()) Fill();
}

void PRINTERDialog::OpenWebPage() {
  const wxLogNull no_box_of_the_toolkits;
  if (wxLaunchDefaultBrowser(kHomePage)) return;
  ShowBox(wxGetTopLevelParent(this), Translated({kNoBrowser, wxString(kHomePage).ToStdWstring()}),
          BoxIcon::kExclamation);
}

void PRINTERDialog::SaveToData() {
  ReadBack();
  if (PRINTERSettings::Save(settings_.Values(end_program_), *document_)) settings_.MarkStored();
  logos_.Write(*document_, {}, end_program_);
}

bool PRINTERDialog::HasUnsavedChanges() {
  ReadBack();
  return settings_.changed();
}

void PRINTERDialog::Apply() {
  if (saving_) return;
  ReadBack();
  saving_ = true;
  if (saver_.joinable()) saver_.join();
  saver_ = StartWorker([this, values = settings_.Values(end_program_)] { Save(values); });
}

/// On the worker's thread; this one waits for each step, so that the document is used by one at a time.
void PRINTERDialog::Save(const PrinterValues& values) {
  calls_.Run([this] { OnSaving(); });
  const bool written = PRINTERSettings::Save(values, *document_);
  logos_.Write(*document_, {},
               [this](const std::wstring& message) { calls_.Run([&] { end_program_(message); }); });
  calls_.Run([this, written] { OnSaved(written); });
}

void PRINTERDialog::OnSaving() {
  busy_.emplace(*wxGetTopLevelParent(this));
  Disable();
}

void PRINTERDialog::OnSaved(bool written) {
  if (written) settings_.MarkStored();
  Enable();
  busy_.reset();
  saving_ = false;
  ShowBox(wxGetTopLevelParent(this), Translated(kSaved), BoxIcon::kInformation);
  log_.line(LEVEL_VERBOSE, "PRINTERDialog - Settings saved");
}

}  // namespace qlx
