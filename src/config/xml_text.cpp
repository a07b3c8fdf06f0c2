#include "config/xml_text.h"

#include <cstdint>

#include "platform/debug_output.h"

namespace qlx {
namespace {

constexpr bool kWideIsUtf16 = sizeof(wchar_t) == 2;

bool IsSurrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDFFF;
}

bool CanHold(wchar_t unit) {
  const auto c = static_cast<char32_t>(unit);
  if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
  return (kWideIsUtf16 || !IsSurrogate(c)) && c != 0xFFFE && c != 0xFFFF && c <= 0x10FFFF;
}

}  // namespace

std::wstring XmlCharacters(std::wstring_view text) {
  std::wstring kept(text);
  if (std::erase_if(kept, [](wchar_t unit) { return !CanHold(unit); }) > 0) {
    platform::SystemDebugOutput().Write(L"[MZP]: characters that the file cannot hold were dropped");
  }
  return kept;
}

}  // namespace qlx
