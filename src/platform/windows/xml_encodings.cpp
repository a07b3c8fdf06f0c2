#include "platform/windows/xml_encodings.h"

#include <algorithm>
#include <charconv>

#include <windows.h>
#include <utf8.h>

#include "platform/text.h"

namespace qlx::platform {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf8 = "utf-8";
constexpr std::string_view kAscii = "us-ascii";

/// Where a document's declaration names its encoding; empty when it names none.
std::string_view DeclaredEncoding(std::string_view text) {
  if (!text.starts_with("<?xml")) return {};
  const std::string_view declaration = text.substr(0, text.find("?>"));
  const std::size_t key = declaration.find("encoding");
  if (key == std::string_view::npos) return {};
  const std::size_t open = declaration.find_first_of("\"'", key);
  if (open == std::string_view::npos) return {};
  const std::size_t close = declaration.find(declaration[open], open + 1);
  if (close == std::string_view::npos) return {};
  return declaration.substr(open + 1, close - open - 1);
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  });
  return lower;
}

std::string WithUtf8Declared(std::string text) {
  const std::string_view declared = DeclaredEncoding(text);
  if (declared.empty()) return text;
  return text.replace(static_cast<std::size_t>(declared.data() - text.data()), declared.size(), "UTF-8");
}

std::optional<std::string> FromUtf16(std::string_view bytes, bool little) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::u16string units;
  units.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    units += static_cast<char16_t>(little ? second << 8 | first : first << 8 | second);
  }
  std::string text;
  try {
    utf8::utf16to8(units.begin(), units.end(), std::back_inserter(text));
  } catch (const utf8::exception&) {
    return std::nullopt;  // half of a character
  }
  return text;
}

/// A family of 8-bit sets: Windows numbers them by the number in their name and a base.
struct Family {
  std::string_view prefix;
  UINT base;
};

constexpr Family kFamilies[] = {{"iso-8859-", 28590}, {"windows-", 0}, {"ibm", 0}};
constexpr UINT kKoi8r = 20866;

std::optional<UINT> CodePage(std::string_view encoding) {
  if (encoding == "koi8-r") return kKoi8r;
  for (const Family& family : kFamilies) {
    if (!encoding.starts_with(family.prefix)) continue;
    const std::string_view digits = encoding.substr(family.prefix.size());
    UINT number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (read.ec == std::errc() && read.ptr == digits.data() + digits.size()) return family.base + number;
  }
  return std::nullopt;
}

/// Windows gives a byte that a set lacks to a control or a character for private use, and calls neither an
/// error.
bool IsStandIn(wchar_t c, bool controls_belong) {
  return (c >= 0xE000 && c < 0xF900) || (c >= 0x80 && c < 0xA0 && !controls_belong);
}

std::optional<std::string> FromCodePage(std::string_view bytes, UINT code_page, bool controls_belong) {
  const int size = static_cast<int>(bytes.size());
  const int units = MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, bytes.data(), size, nullptr, 0);
  if (units <= 0) return std::nullopt;
  std::wstring text(static_cast<std::size_t>(units), L'\0');
  MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, bytes.data(), size, text.data(), units);
  if (std::ranges::any_of(text, [&](wchar_t c) { return IsStandIn(c, controls_belong); }))
    return std::nullopt;
  return ToUtf8(text);
}

bool IsAscii(std::string_view bytes) {
  return std::ranges::all_of(bytes, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::optional<std::string> FromBytes(std::string_view bytes) {
  const std::string encoding = Lower(DeclaredEncoding(bytes));
  if (encoding.empty() || encoding == kUtf8) {
    return utf8::is_valid(bytes.begin(), bytes.end()) ? std::optional(std::string(bytes)) : std::nullopt;
  }
  if (encoding == kAscii) return IsAscii(bytes) ? std::optional(std::string(bytes)) : std::nullopt;
  const auto code_page = CodePage(encoding);
  return code_page ? FromCodePage(bytes, *code_page, encoding.starts_with("iso-")) : std::nullopt;
}

}  // namespace

std::optional<std::string> XmlInUtf8(std::string_view bytes) {
  std::optional<std::string> text;
  if (bytes.starts_with("\xFF\xFE")) {
    text = FromUtf16(bytes.substr(2), true);
  } else if (bytes.starts_with("\xFE\xFF")) {
    text = FromUtf16(bytes.substr(2), false);
  } else {
    text = FromBytes(bytes.starts_with(kMark) ? bytes.substr(kMark.size()) : bytes);
  }
  return text ? std::optional(WithUtf8Declared(std::move(*text))) : std::nullopt;
}

}  // namespace qlx::platform
