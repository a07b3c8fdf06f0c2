// Receipts as pictures that a person can look at.
#pragma once

#include <filesystem>
#include <string_view>

#include "sim/receipt/Typesetter.h"

namespace qlx::receipt {

/// What a receipt printer makes of `bytes`, whatever they are. Takes time in proportion to the paper, which
/// is bounded, and to the bytes.
Paper SetReceipt(std::string_view bytes);

/// Writes the paper as a grey PNG, a pixel a dot, with the margins that a roll of 80 mm has at its sides.
/// False, and no file is left, when it cannot be written.
bool DrawPaper(const Paper& paper, const std::filesystem::path& path);

/// The width of each margin, in pixels.
inline constexpr int kPaperMargin = 32;

}  // namespace qlx::receipt
