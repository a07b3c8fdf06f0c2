#include "config/values.h"

#include <algorithm>
#include <limits>

namespace qlx {
namespace {

bool IsDigit(wchar_t c) {
  return c >= L'0' && c <= L'9';
}

wchar_t AsciiLower(wchar_t c) {
  return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

}  // namespace

std::optional<std::int32_t> ParseNumber(std::wstring_view text) {
  if (text.empty() || !std::all_of(text.begin(), text.end(), IsDigit)) return std::nullopt;
  constexpr std::int64_t kLimit = std::numeric_limits<std::int32_t>::max();
  std::int64_t number = 0;
  for (const wchar_t digit : text) number = std::min(kLimit, number * 10 + (digit - L'0'));
  return static_cast<std::int32_t>(number);
}

bool IsTrue(std::wstring_view text) {
  return std::equal(text.begin(), text.end(), std::wstring_view(L"true").begin(),
                    std::wstring_view(L"true").end(),
                    [](wchar_t a, wchar_t b) { return AsciiLower(a) == b; });
}

std::wstring_view CheckText(bool checked) {
  return checked ? L"true" : L"";
}

}  // namespace qlx
