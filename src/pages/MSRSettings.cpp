#include "pages/MSRSettings.h"

#include "config/Message.h"
#include "platform/text.h"

namespace qlx {
namespace {

using enum SettingForm;

constexpr PageFacts kFacts = {
    .section = L"MSR_Configuration",
    .no_document = Translatable(L"Error loading MSR settings!\nExiting program."),
    .edit_not_converted = Translatable(L"Error converting MSR settings!\nExiting program."),
    .choice_not_converted = Translatable(L"Error converting MSR settings!\nExiting program."),
    .saved = Translatable(L"MSR settings saved."),
};

constexpr SettingRow kRows[] = {
    {MSRSettings::kCarriageReturn, L"CR_Enabled", kCheck},
    {MSRSettings::kTrack1, L"Track1_Enabled", kCheck},
    {MSRSettings::kTrack2, L"Track2_Enabled", kCheck},
    {MSRSettings::kTrack3, L"Track3_Enabled", kCheck},
    {MSRSettings::kStripSentinels, L"Strip_Sentinels", kCheck},
    {MSRSettings::kHideErrorTracks, L"Hide_Error_Tracks", kCheck},
    {MSRSettings::kStartSentinel1, L"Track1_Start_Sentinel", kFilledText, 1},
    {MSRSettings::kStartSentinel2, L"Track2_Start_Sentinel", kFilledText, 1},
    {MSRSettings::kStartSentinel3, L"Track3_Start_Sentinel", kFilledText, 1},
    {MSRSettings::kEndSentinel, L"End_Sentinel", kFilledText, 1},
    {MSRSettings::kHeadText, L"Head_Wrapper", kFilledText, MSRSettings::kWrapperBudget},
    {MSRSettings::kTailText, L"Tail_Wrapper", kFilledText, MSRSettings::kWrapperBudget},
    {MSRSettings::kTrackReturn1, L"Track1_CR_Enabled", kCheck},
    {MSRSettings::kTrackReturn2, L"Track2_CR_Enabled", kCheck},
    {MSRSettings::kTrackReturn3, L"Track3_CR_Enabled", kCheck},
};

constexpr int kTrackReturns[] = {MSRSettings::kTrackReturn1, MSRSettings::kTrackReturn2,
                                 MSRSettings::kTrackReturn3};

int TextControl(WrapperSide side) {
  return side == WrapperSide::kHead ? MSRSettings::kHeadText : MSRSettings::kTailText;
}

WrapperSide Other(WrapperSide side) {
  return side == WrapperSide::kHead ? WrapperSide::kTail : WrapperSide::kHead;
}

}  // namespace

MSRSettings::MSRSettings() : PageSettings(kFacts, kRows) {
  ShareBudget();
}

void MSRSettings::SetDefaults() {
  wrappers_ = {};
  PageSettings::SetDefaults();
}

void MSRSettings::Load(const std::vector<ConfigNode>& pairs) {
  PageSettings::Load(pairs);
  TurnOnFilledWrapper(WrapperSide::kHead);
  TurnOnFilledWrapper(WrapperSide::kTail);
  ApplyCarriageReturn();
}

void MSRSettings::SetText(int control, const std::wstring& text) {
  PageSettings::SetText(control, text);
  if (control == kHeadText || control == kTailText) ShareBudget();
}

std::size_t MSRSettings::WrapperLength(WrapperSide side) const {
  return platform::Utf16Length(Text(TextControl(side)));
}

void MSRSettings::ShareBudget() {
  for (const WrapperSide side : {WrapperSide::kHead, WrapperSide::kTail}) {
    Wrapper& wrapper = wrappers_[Index(side)];
    const std::size_t taken = WrapperLength(Other(side));
    if (taken >= kWrapperBudget) {
      // A full wrapper locks the other one out altogether, and it stays locked when the full one shrinks.
      wrapper.on = false;
      wrapper.enabled = false;
    } else {
      wrapper.limit = kWrapperBudget - taken;
    }
  }
}

void MSRSettings::TurnOnFilledWrapper(WrapperSide side) {
  if (WrapperLength(side) == 0) return;
  wrappers_[Index(side)].on = true;
  wrappers_[Index(side)].enabled = true;
}

void MSRSettings::ClickWrapper(WrapperSide side, bool checked) {
  Wrapper& wrapper = wrappers_[Index(side)];
  if (!checked) {
    wrapper.on = false;
    wrapper.enabled = false;
    SetText(TextControl(side), L"");
  } else if (WrapperLength(Other(side)) != kWrapperBudget) {
    wrapper.on = true;
    wrapper.enabled = true;
  }
}

void MSRSettings::ClickCarriageReturn(bool checked) {
  SetChecked(kCarriageReturn, checked);
  ApplyCarriageReturn();
}

void MSRSettings::ApplyCarriageReturn() {
  if (!editable()) return;  // shown as the file has it
  track_returns_enabled_ = !Checked(kCarriageReturn);
  if (track_returns_enabled_) return;
  for (const int control : kTrackReturns) SetChecked(control, false);
}

}  // namespace qlx
