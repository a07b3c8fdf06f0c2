#include "config/xml_text.h"

#include <cstdint>

#include "platform/debug_output.h"

namespace qlx {
namespace {

constexpr bool kWideIsUtf16 = sizeof(wchar_t) == 2;

bool IsHighHalf(wchar_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLowHalf(wchar_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

bool CanHold(wchar_t unit) {
  const auto c = static_cast<char32_t>(unit);
  if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
  return !IsHighHalf(unit) && !IsLowHalf(unit) && c != 0xFFFE && c != 0xFFFF && c <= 0x10FFFF;
}

/// How many units at the beginning of `text` are one character that the file can hold; 0 for none.
std::size_t HeldUnits(std::wstring_view text) {
  if (kWideIsUtf16 && text.size() > 1 && IsHighHalf(text[0]) && IsLowHalf(text[1])) return 2;
  return CanHold(text.front()) ? 1 : 0;
}

}  // namespace

std::wstring XmlCharacters(std::wstring_view text) {
  std::wstring kept;
  kept.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t held = HeldUnits(text.substr(i));
    kept += text.substr(i, held);
    i += held == 0 ? 1 : held;
  }
  if (kept.size() < text.size()) {
    platform::SystemDebugOutput().Write(L"[MZP]: characters that the file cannot hold were dropped");
  }
  return kept;
}

}  // namespace qlx
