// The magnetic stripe reader page without its window.
#pragma once

#include <array>

#include "pages/PageSettings.h"

namespace qlx {

/// One of the two texts that wrap a swipe's data.
enum class WrapperSide { kHead, kTail };

/// The state of one wrapper beside its text, which is a setting like the others.
struct Wrapper {
  bool on = false;        ///< its check box
  bool enabled = false;   ///< its text field
  std::size_t limit = 0;  ///< UTF-16 units that typing may fill
};

/// Section MSR_Configuration with its two rules: the wrappers share 14 characters, and a carriage return
/// after every track excludes carriage returns after single tracks.
class MSRSettings : public PageSettings {
 public:
  static constexpr int kRawData = 1001;
  static constexpr int kCarriageReturn = 1002;
  static constexpr int kTrack1 = 1003;
  static constexpr int kTrack2 = 1004;
  static constexpr int kTrack3 = 1005;
  static constexpr int kStripSentinels = 1006;
  static constexpr int kHideErrorTracks = 1007;
  static constexpr int kStartSentinel1 = 1008;
  static constexpr int kStartSentinel2 = 1009;
  static constexpr int kStartSentinel3 = 1010;
  static constexpr int kEndSentinel = 1011;
  static constexpr int kHeadOn = 1012;
  static constexpr int kTailOn = 1013;
  static constexpr int kHeadText = 1014;
  static constexpr int kTailText = 1015;
  static constexpr int kTrackReturn1 = 1016;
  static constexpr int kTrackReturn2 = 1017;
  static constexpr int kTrackReturn3 = 1018;
  static constexpr std::size_t kWrapperBudget = 14;

  MSRSettings();

  /// Leaves the enabled state of the single tracks' carriage returns alone: wanted, operators rely on it.
  void SetDefaults() override;
  void Load(const std::vector<ConfigNode>& pairs) override;
  void SetText(int control, const std::wstring& text) override;

  const Wrapper& wrapper(WrapperSide side) const { return wrappers_[Index(side)]; }
  /// True when the carriage returns of single tracks can be chosen.
  bool track_returns_enabled() const { return track_returns_enabled_; }

  /// The user has set the check box of a wrapper, or of the carriage return, to `checked`.
  void ClickWrapper(WrapperSide side, bool checked);
  void ClickCarriageReturn(bool checked);

 private:
  static std::size_t Index(WrapperSide side) { return static_cast<std::size_t>(side); }
  std::size_t WrapperLength(WrapperSide side) const;
  void ShareBudget();
  void TurnOnFilledWrapper(WrapperSide side);
  void ApplyCarriageReturn();

  std::array<Wrapper, 2> wrappers_;
  bool track_returns_enabled_ = true;
};

}  // namespace qlx
