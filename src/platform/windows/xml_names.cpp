#include "platform/windows/xml_names.h"

#include <algorithm>
#include <string>

#include <utf8.h>

#include "platform/text.h"

namespace qlx::platform {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

/// XML 1.0, productions 4 (without the colon) and 4a.
constexpr Range kStart[] = {{'A', 'Z'},       {'_', '_'},       {'a', 'z'},        {0xC0, 0xD6},
                            {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},    {0x37F, 0x1FFF},
                            {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},  {0x3001, 0xD7FF},
                            {0xF900, 0xFDCF}, {0xFDF0, 0xFFFC}, {0x10000, 0xEFFFF}};
constexpr Range kInside[] = {{'-', '-'},   {'.', '.'},     {'0', '9'},
                             {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t Size>
bool IsIn(const Range (&ranges)[Size], char32_t c) {
  return std::ranges::any_of(ranges, [c](const Range& range) { return range.first <= c && c <= range.last; });
}

}  // namespace

bool IsXmlName(std::wstring_view text) {
  const std::u32string name = utf8::utf8to32(ToUtf8(text));
  return !name.empty() && IsIn(kStart, name.front()) &&
         std::ranges::all_of(name, [](char32_t c) { return IsIn(kStart, c) || IsIn(kInside, c); });
}

bool IsQualifiedXmlName(std::wstring_view text) {
  const std::size_t colon = text.find(L':');
  if (colon == std::wstring_view::npos) return IsXmlName(text);
  return IsXmlName(text.substr(0, colon)) && IsXmlName(text.substr(colon + 1));
}

}  // namespace qlx::platform
