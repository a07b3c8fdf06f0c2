#include "app/StatusLine.h"

#include <chrono>

#include <wx/sizer.h>

#include "controls/accessible_id.h"
#include "controls/translation.h"
#include "pages/unsaved_pages.h"

namespace qlx {
namespace {

constexpr int kFile = 2001;
constexpr int kServices = 2002;
constexpr int kUnsaved = 2003;
constexpr int kShortest = 20;  // in average characters
constexpr std::chrono::milliseconds kPeriod = std::chrono::seconds(5);

/// A text that may grow longer than its place: what is cut off there is in its tool tip and its name.
void ShowText(wxStaticText& text, const wxString& words) {
  if (text.GetLabelText() == words && !text.GetToolTipText().empty()) return;
  text.SetLabelText(words);
  text.SetToolTip(words);
  SetAccessibleName(text, words);
}

}  // namespace

StatusLine::StatusLine(wxWindow* parent)
    : wxPanel(parent),
      file_(new wxStaticText(this, kFile, wxString(), wxDefaultPosition, wxDefaultSize,
                             wxST_ELLIPSIZE_MIDDLE | wxST_NO_AUTORESIZE)),
      unsaved_(new wxStaticText(this, kUnsaved, wxString(), wxDefaultPosition, wxDefaultSize,
                                wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE)),
      services_(new wxStaticText(this, kServices, wxString())),
      probe_(platform::OpenServiceManagerToLook,
             [this](const ServiceStates& states) { calls_.Post([this, states] { ShowServices(states); }); }) {
  m_container.DisableSelfFocus();  // nothing in it can be changed: the tab key passes it by
  ShowServices({});
  ShowUnsaved({});
  file_->SetMinSize({kShortest * GetCharWidth(), -1});
  unsaved_->SetMinSize(file_->GetMinSize());
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(unsaved_, wxSizerFlags(1).CentreVertical());
  row->Add(services_, wxSizerFlags().CentreVertical().DoubleBorder(wxLEFT));
  auto* rows = new wxBoxSizer(wxVERTICAL);
  rows->Add(row, wxSizerFlags().Expand());
  rows->AddSpacer(GetCharHeight() / 4);
  rows->Add(file_, wxSizerFlags().Expand());
  SetSizer(rows);
  timer_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTimer(); });
}

StatusLine::~StatusLine() {
  calls_.Close();
}

void StatusLine::ShowFile(const std::wstring& path) {
  ShowText(*file_, path);
}

void StatusLine::ShowUnsaved(const std::vector<std::wstring>& pages) {
  ShowText(*unsaved_, Translated(UnsavedMessage(pages)));
}

void StatusLine::AskForServices() {
  probe_.Ask();
  timer_.Start(static_cast<int>(kPeriod.count()));
}

/// A manager that has not answered for a whole period is not one to trust the last answer of.
void StatusLine::OnTimer() {
  if (!probe_.Ask()) ShowServices({});
}

void StatusLine::ShowServices(const ServiceStates& states) {
  ShowText(*services_, Translated(ServicesMessage(states)));
  Layout();
}

}  // namespace qlx
