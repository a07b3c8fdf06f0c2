// The layout of QLXConfig.xml: sections, settings and the texts that a new file holds.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace qlx {

inline constexpr std::wstring_view kRootElement = L"MZP";
inline constexpr std::wstring_view kFileName = L"QLXConfig.xml";

/// One setting of a new file. A device of Ports_Configuration carries an empty USB identity.
struct SettingDefault {
  std::wstring_view key;
  std::wstring_view text;
  bool usb_identity = false;
};

struct SectionDefault {
  std::wstring_view name;
  std::span<const SettingDefault> settings;
};

/// The sections in the order in which a new file holds them.
std::span<const SectionDefault> Sections();

/// The text that a new file holds for `key` of `section`; empty for a key that a new file does not hold.
std::wstring_view DefaultText(std::wstring_view section, std::wstring_view key);

}  // namespace qlx
