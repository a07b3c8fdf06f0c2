#include "demo/DemoDialog.h"

#include <utility>

#include <wx/fontenum.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "controls/BusyWindow.h"
#include "controls/accessible_id.h"
#include "controls/translation.h"
#include "controls/window_icons.h"
#include "demo/demo_commands.h"
#include "demo/demo_kinds.h"
#include "demo/received_text.h"

namespace qlx {
namespace {

constexpr int kCommandButton = 1067;
constexpr int kCommand2Button = 1069;
constexpr int kPortLabel = 1068;
constexpr int kOutput = 1065;
constexpr int kHexCheckBox = 1070;
constexpr int kClearButton = 1066;
constexpr int kCloseButton = 1;

// Thirty times a second looks immediate, and leaves the window its time however fast a device sends.
constexpr int kPauseMs = 33;
constexpr std::size_t kBytesATime = 16 * 1024;

constexpr int kColumns = 58;
constexpr int kRows = 18;

const DemoKind& Kind(DeviceKind kind) {
  return kDemoKinds[static_cast<std::size_t>(kind)];
}

wxFont FixedPitchFont(const wxFont& like) {
  wxFontInfo info(like.GetFractionalPointSize());
  info.Family(wxFONTFAMILY_TELETYPE);
  const wxString face = "Courier New";
  if (wxFontEnumerator::IsValidFacename(face)) info.FaceName(face);
  return info;
}

wxString Label(std::wstring_view text, const wxString& otherwise) {
  return text.empty() ? otherwise : wxString(Translated(text));
}

}  // namespace

DemoDialog::DemoDialog(wxWindow* parent, DeviceKind kind, const std::wstring& port,
                       SerialLink::OpenPort open_port)
    : wxDialog(parent, wxID_ANY, Translated(Kind(kind).title), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
      kind_(kind),
      session_(
          std::move(open_port), [this] { calls_.Post([this] { ShowWaiting(); }); }, ServePainting) {
  TakeParentIcons(*this);
  LayOut(port);
  BindEvents();
  if (!session_.Open(port)) {
    for (wxWindow* control : {static_cast<wxWindow*>(command_), static_cast<wxWindow*>(command2_),
                              static_cast<wxWindow*>(hex_)}) {
      control->Disable();
    }
  }
}

void DemoDialog::LayOut(const std::wstring& port) {
  auto* frame = new wxBoxSizer(wxVERTICAL);
  frame->Add(MakeCommands(port), wxSizerFlags().Expand().Border(wxALL));
  MakeOutput();
  frame->Add(output_, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT));
  frame->Add(MakeFoot(), wxSizerFlags().Expand().Border(wxALL));
  SetSizerAndFit(frame);
  CentreOnParent();
  PublishIds(*this);
}

wxSizer* DemoDialog::MakeCommands(const std::wstring& port) {
  const DemoKind& look = Kind(kind_);
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(new wxStaticText(this, wxID_ANY, _("COM Port:")), wxSizerFlags().CentreVertical().Border(wxRIGHT));
  row->Add(new wxStaticText(this, kPortLabel, port), wxSizerFlags().CentreVertical());
  row->AddStretchSpacer();
  command_ = new wxButton(this, kCommandButton, Label(look.command, _("Command")));
  command2_ = new wxButton(this, kCommand2Button, Label(look.command2, _("Command2")));
  command_->Show(!look.command.empty());
  command2_->Show(!look.command2.empty());
  row->Add(command_, wxSizerFlags().Border(wxLEFT));
  row->Add(command2_, wxSizerFlags().Border(wxLEFT));
  return row;
}

void DemoDialog::MakeOutput() {
  output_ = new wxTextCtrl(this, kOutput, wxString(), wxDefaultPosition, wxDefaultSize,
                           wxTE_MULTILINE | wxTE_READONLY);
  output_->SetFont(FixedPitchFont(output_->GetFont()));
  const wxSize character = output_->GetTextExtent("0");
  output_->SetMinSize(wxSize(kColumns * character.x, kRows * character.y));
  SetAccessibleName(*output_, _("Received data"));
}

wxSizer* DemoDialog::MakeFoot() {
  const DemoKind& look = Kind(kind_);
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  hex_ = new wxCheckBox(this, kHexCheckBox, _("Show Data In &Hex"));
  hex_->Show(look.offers_hex);
  hex_->SetValue(look.starts_hex);
  clear_ = new wxButton(this, kClearButton, _("C&lear"));
  clear_->Disable();
  auto* close = new wxButton(this, kCloseButton, _("&Close"));
  close->SetDefault();
  row->Add(hex_, wxSizerFlags().CentreVertical());
  row->AddStretchSpacer();
  row->Add(clear_, wxSizerFlags().Border(wxRIGHT));
  row->Add(close);
  return row;
}

void DemoDialog::BindEvents() {
  command_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Send(FirstDemoCommand(kind_)); });
  command2_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Send(SecondDemoCommand(kind_)); });
  clear_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Clear(); });
  Bind(
      wxEVT_BUTTON, [this](wxCommandEvent&) { Leave(wxID_OK); }, kCloseButton);
  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Leave(wxID_CANCEL); });
  Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    if (key == WXK_ESCAPE) {
      Leave(wxID_CANCEL);
    } else if ((key == WXK_RETURN || key == WXK_NUMPAD_ENTER) && output_->HasFocus()) {
      Leave(wxID_OK);  // a text of many lines would keep the key to itself
    } else {
      event.Skip();
    }
  });
  pause_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { ShowWaiting(); });
}

void DemoDialog::Send(const DemoCommand& command) {
  if (sending_) return;  // the window lives on while a device keeps a write waiting
  sending_ = true;
  session_.Send(command);
  sending_ = false;
  if (close_result_ != 0) Leave(close_result_);
}

void DemoDialog::ShowWaiting() {
  if (pause_.IsRunning()) return;
  const std::vector<SessionEvent> events = session_.Take(kBytesATime);
  if (events.empty()) return;
  Append(events);
  pause_.StartOnce(kPauseMs);
}

void DemoDialog::Append(const std::vector<SessionEvent>& events) {
  std::wstring text;
  const auto add = [&](const std::wstring& line) {
    if (!output_empty_) text += L'\n';
    text += line;
    output_empty_ = false;
  };
  for (const SessionEvent& event : events) {
    if (const auto* line = std::get_if<std::wstring>(&event)) {
      add(Translated(*line));
    } else {
      for (const Message& line_of_block :
           DescribeReceived(kind_, std::get<std::vector<std::uint8_t>>(event), hex_->GetValue())) {
        add(Translated(line_of_block));
      }
    }
  }
  output_->AppendText(text);
  clear_->Enable();
}

void DemoDialog::Clear() {
  output_->Clear();
  output_empty_ = true;
  output_->SetFocus();  // the button that had it goes grey
  clear_->Disable();
}

void DemoDialog::Leave(int result) {
  if (sending_) {
    close_result_ = result;
    session_.Stop();
    return;
  }
  session_.Close();
  pause_.Stop();
  EndModal(result);
}

}  // namespace qlx
