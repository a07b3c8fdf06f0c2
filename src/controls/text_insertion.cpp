#include "controls/text_insertion.h"

#include <algorithm>

#include "platform/text.h"

namespace qlx {
namespace {

/// XML 1.0, production 2 (Char), for the characters that a single line can hold. Surrogates pass: they are
/// halves of a character where wide text is UTF-16.
bool XmlCanHold(wchar_t c) {
  return (c >= 0x20 || c == L'\t') && c != 0xFFFE && c != 0xFFFF;
}

bool IsDigit(wchar_t c) {
  return c >= L'0' && c <= L'9';
}

}  // namespace

std::wstring AcceptedInsertion(const InsertionRule& rule, std::size_t held_units,
                               std::wstring_view inserted) {
  std::wstring accepted(inserted.substr(0, inserted.find_first_of(L"\r\n")));
  std::erase_if(accepted, [&](wchar_t c) { return !XmlCanHold(c) || (rule.digits_only && !IsDigit(c)); });
  const std::size_t room = rule.limit > held_units ? rule.limit - held_units : 0;
  return std::wstring(platform::Utf16Prefix(accepted, room));
}

}  // namespace qlx
