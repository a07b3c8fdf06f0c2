// The forms that values take in the configuration file. All functions are pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace qlx {

/// The decimal number that `text` holds: a non-empty run of ASCII digits, saturated at 2147483647. Empty for
/// anything else; signs, blanks and hexadecimal are refused.
std::optional<std::int32_t> ParseNumber(std::wstring_view text);

/// True when `text` is "true" in any letter case.
bool IsTrue(std::wstring_view text);

/// What a check box stores: "true" when checked, the empty text when not. The services read anything but
/// "true" as off, and older files hold the empty form, so "false" is never written.
std::wstring_view CheckText(bool checked);

}  // namespace qlx
