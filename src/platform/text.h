// Conversions between the tool's wide text and the 8-bit text of files, records and the operating system.
// All functions are pure and may be called from any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qlx::platform {

/// UTF-8 (RFC 3629) of `text`. Code units that form no character become U+FFFD.
std::string ToUtf8(std::wstring_view text);

/// Wide text of UTF-8 `bytes`. Bytes that are no UTF-8 become U+FFFD, one for each maximal damaged run.
std::wstring FromUtf8(std::string_view bytes);

/// Length of `text` in UTF-16 code units, on every platform: the unit of all length limits of the tool.
std::size_t Utf16Length(std::wstring_view text);

/// The UTF-16 code units of `text`. Code units that form no character become U+FFFD.
std::u16string ToUtf16(std::wstring_view text);

/// The longest beginning of `text` that has at most `units` UTF-16 code units and splits no character.
std::wstring_view Utf16Prefix(std::wstring_view text, std::size_t units);

}  // namespace qlx::platform
