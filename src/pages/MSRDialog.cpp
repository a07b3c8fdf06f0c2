#include "pages/MSRDialog.h"

#include <utility>

#include <wx/checkbox.h>
#include <wx/statbox.h>

#include "controls/tool_tips.h"
#include "controls/translation.h"

namespace qlx {
namespace {

constexpr int kDefaultButton = 1029;
constexpr int kApplyButton = 1024;
constexpr WrapperSide kSides[] = {WrapperSide::kHead, WrapperSide::kTail};

struct Labelled {
  int id;
  const char* label;
};

constexpr Labelled kSwitches[] = {
    {MSRSettings::kRawData, Translatable("Raw Data &Mode (AAMVA Mode)")},
    {MSRSettings::kCarriageReturn, Translatable("Carria&ge Return Enabled")},
    {MSRSettings::kTrack1, Translatable("Track &1 Enabled")},
    {MSRSettings::kTrack2, Translatable("Track &2 Enabled")},
    {MSRSettings::kTrack3, Translatable("Track &3 Enabled")},
    {MSRSettings::kStripSentinels, Translatable("&Strip Sentinels")},
    {MSRSettings::kHideErrorTracks, Translatable("Hide Err&or Tracks")},
};

constexpr Labelled kSentinels[] = {
    {MSRSettings::kStartSentinel1, Translatable("S&tart Sentinel (Track 1)")},
    {MSRSettings::kStartSentinel2, Translatable("Sta&rt Sentinel (Track 2)")},
    {MSRSettings::kStartSentinel3, Translatable("Start Se&ntinel (Track 3)")},
    {MSRSettings::kEndSentinel, Translatable("&End Sentinel")},
};

constexpr Labelled kTrackReturns[] = {
    {MSRSettings::kTrackReturn1, Translatable("&CR Track 1 Enabled")},
    {MSRSettings::kTrackReturn2, Translatable("CR Track 2 Ena&bled")},
    {MSRSettings::kTrackReturn3, Translatable("CR Trac&k 3 Enabled")},
};

constexpr const char* kOwnReturn = Translatable("Sends a carriage return (CR) behind this track only.");
constexpr const char* kWrapper =
    Translatable("A text that is sent with the card's data. Both wrappers together hold 14 characters.");

constexpr Term kTerms[] = {
    {MSRSettings::kCarriageReturn, Translatable("Sends a carriage return (CR) behind every track.")},
    {MSRSettings::kStripSentinels,
     Translatable("Sentinels mark where a track starts and ends. Stripped, they are not sent.")},
    {MSRSettings::kHideErrorTracks, Translatable("Leaves out a track that could not be read.")},
    {MSRSettings::kTrackReturn1, kOwnReturn},
    {MSRSettings::kTrackReturn2, kOwnReturn},
    {MSRSettings::kTrackReturn3, kOwnReturn},
    {MSRSettings::kHeadText, kWrapper},
    {MSRSettings::kTailText, kWrapper},
};

struct WrapperControls {
  int box;
  int text;
  const char* label;
  const char* text_name;
};

constexpr WrapperControls ControlsOf(WrapperSide side) {
  return side == WrapperSide::kHead
             ? WrapperControls{MSRSettings::kHeadOn, MSRSettings::kHeadText, Translatable("Head &Wrapper"),
                               Translatable("Head Wrapper text")}
             : WrapperControls{MSRSettings::kTailOn, MSRSettings::kTailText, Translatable("Ta&il Wrapper"),
                               Translatable("Tail Wrapper text")};
}

}  // namespace

MSRDialog::MSRDialog(wxWindow* parent, FatalEnd end_program)
    : PageView(parent, settings_, std::move(end_program)) {
  auto* page = new wxBoxSizer(wxVERTICAL);
  page->Add(MakeParameters(), wxSizerFlags().Expand().Border(wxALL));
  page->Add(MakeEnhanced(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT));
  page->AddStretchSpacer();
  page->Add(MakeButtons(kDefaultButton, kApplyButton), wxSizerFlags().Right().Border(wxALL));
  SetSizer(page);
  ExplainTerms(*this, kTerms);
  BindRules();
}

wxSizer* MSRDialog::MakeParameters() {
  auto* group = new wxStaticBoxSizer(wxHORIZONTAL, this, _("MSR Configuration Parameters"));
  const wxSize gap(GetCharWidth(), GetCharHeight() / 4);
  auto* switches = new wxFlexGridSizer(1, gap);
  for (const Labelled& row : kSwitches) AddCheckBox({group->GetStaticBox(), switches}, row.id, _(row.label));
  FindWindow(MSRSettings::kRawData)->Disable();

  auto* sentinels = new wxFlexGridSizer(2, gap);
  const Place in = {group->GetStaticBox(), sentinels};
  for (const Labelled& row : kSentinels) {
    AddLabel(in, _(row.label));
    AddEdit(in, row.id, _(row.label), 0, wxTE_CENTRE);
  }
  group->Add(switches, wxSizerFlags(1).Border(wxALL));
  group->Add(sentinels, wxSizerFlags(1).Border(wxALL));
  return group;
}

wxSizer* MSRDialog::MakeEnhanced() {
  auto* group = new wxStaticBoxSizer(wxHORIZONTAL, this, _("MSR Enhanced Configuration"));
  auto* wrappers = new wxStaticBoxSizer(wxVERTICAL, group->GetStaticBox(), _("Data Wrapper Configuration"));
  auto* grid = new wxFlexGridSizer(2, wxSize(GetCharWidth(), GetCharHeight() / 4));
  grid->AddGrowableCol(1);
  for (const WrapperSide side : kSides) AddWrapper({wrappers->GetStaticBox(), grid}, side);
  wrappers->Add(grid, wxSizerFlags().Expand().Border(wxALL));

  auto* returns = new wxStaticBoxSizer(wxVERTICAL, group->GetStaticBox(), _("Individual CR Enabled"));
  auto* column = new wxFlexGridSizer(1, wxSize(0, GetCharHeight() / 4));
  for (const Labelled& row : kTrackReturns)
    AddCheckBox({returns->GetStaticBox(), column}, row.id, _(row.label));
  returns->Add(column, wxSizerFlags().Border(wxALL));

  group->Add(wrappers, wxSizerFlags(1).Expand().Border(wxALL));
  group->Add(returns, wxSizerFlags(1).Expand().Border(wxALL));
  return group;
}

void MSRDialog::AddWrapper(Place place, WrapperSide side) {
  const WrapperControls controls = ControlsOf(side);
  AddCheckBox(place, controls.box, _(controls.label));
  AddEdit(place, controls.text, _(controls.text_name), wxEXPAND);
}

void MSRDialog::BindRules() {
  Bind(
      wxEVT_CHECKBOX,
      [this](wxCommandEvent& event) {
        ReadBack();
        settings_.ClickCarriageReturn(event.IsChecked());
        Fill();
      },
      MSRSettings::kCarriageReturn);
  for (const WrapperSide side : kSides) {
    const WrapperControls controls = ControlsOf(side);
    Bind(
        wxEVT_CHECKBOX,
        [this, side](wxCommandEvent& event) {
          ReadBack();
          settings_.ClickWrapper(side, event.IsChecked());
          Fill();
        },
        controls.box);
    Bind(
        wxEVT_TEXT,
        [this, text = controls.text](wxCommandEvent& event) {
          settings_.SetText(text, event.GetString().ToStdWstring());
          ShowStates();
        },
        controls.text);
  }
}

void MSRDialog::Fill() {
  PageView::Fill();
  ShowStates();
}

void MSRDialog::ShowStates() {
  for (const WrapperSide side : kSides) ShowWrapper(side);
  for (const Labelled& row : kTrackReturns) {
    FindWindow(row.id)->Enable(settings_.editable() && settings_.track_returns_enabled());
  }
}

void MSRDialog::ShowWrapper(WrapperSide side) {
  const WrapperControls controls = ControlsOf(side);
  const Wrapper& wrapper = settings_.wrapper(side);
  static_cast<wxCheckBox*>(FindWindow(controls.box))->SetValue(wrapper.on);
  auto* edit = static_cast<LimitedEdit*>(FindWindow(controls.text));
  edit->Enable(settings_.editable() && wrapper.enabled);
  edit->SetLimit(wrapper.limit);
}

}  // namespace qlx
