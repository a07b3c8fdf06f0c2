// The code pages of the receipt printer: what the page offers and which number the services know each by.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "config/Message.h"

namespace qlx {

/// The item that leaves the choice to the printer; the last one of every list.
inline constexpr std::wstring_view kPrinterDefault = Translatable(L"Printer Default");

/// What is offered while the printer has not told what it has, in the order of the printer's own numbering;
/// "Generic" stands where no code page has a number.
std::span<const std::wstring_view> StandardCodePages();

/// The number that is stored for the code page `text`; empty for one that has none.
std::optional<int> CodePageNumber(std::wstring_view text);

}  // namespace qlx
