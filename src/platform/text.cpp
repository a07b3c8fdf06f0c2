#include "platform/text.h"

#include <algorithm>
#include <iterator>

#include <utf8.h>

namespace qlx::platform {
namespace {

constexpr bool kWideIsUtf16 = sizeof(wchar_t) == 2;
constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

char32_t Unit(wchar_t c) {
  return static_cast<char32_t>(c);
}

/// Takes one character off the front of `text`; a unit that forms none is taken as U+FFFD.
char32_t TakeCharacter(std::wstring_view& text) {
  const char32_t first = Unit(text.front());
  text.remove_prefix(1);
  if (kWideIsUtf16 && IsHighSurrogate(first) && !text.empty() && IsLowSurrogate(Unit(text.front()))) {
    const char32_t second = Unit(text.front());
    text.remove_prefix(1);
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
  }
  const bool valid = !IsHighSurrogate(first) && !IsLowSurrogate(first) && first <= 0x10FFFF;
  return valid ? first : kReplacement;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  while (!text.empty()) utf8::append(TakeCharacter(text), std::back_inserter(bytes));
  return bytes;
}

std::wstring FromUtf8(std::string_view bytes) {
  if (std::ranges::all_of(bytes, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; })) {
    return std::wstring(bytes.begin(), bytes.end());
  }
  std::string repaired;
  if (!utf8::is_valid(bytes.begin(), bytes.end())) {
    utf8::replace_invalid(bytes.begin(), bytes.end(), std::back_inserter(repaired), kReplacement);
    bytes = repaired;
  }
  std::wstring text;
  text.reserve(bytes.size());
  if constexpr (kWideIsUtf16) {
    utf8::unchecked::utf8to16(bytes.begin(), bytes.end(), std::back_inserter(text));
  } else {
    utf8::unchecked::utf8to32(bytes.begin(), bytes.end(), std::back_inserter(text));
  }
  return text;
}

std::size_t Utf16Length(std::wstring_view text) {
  std::size_t units = text.size();
  if constexpr (!kWideIsUtf16) {
    for (const wchar_t c : text) units += Unit(c) > 0xFFFF ? 1U : 0U;
  }
  return units;
}

std::u16string ToUtf16(std::wstring_view text) {
  return utf8::utf8to16(ToUtf8(text));
}

std::wstring_view Utf16Prefix(std::wstring_view text, std::size_t units) {
  std::size_t taken = 0;
  std::wstring_view rest = text;
  while (!rest.empty()) {
    const std::size_t width = TakeCharacter(rest) > 0xFFFF ? 2U : 1U;
    if (width > units) break;
    units -= width;
    taken = text.size() - rest.size();
  }
  return text.substr(0, taken);
}

}  // namespace qlx::platform
