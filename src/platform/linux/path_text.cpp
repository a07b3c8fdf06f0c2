#include "platform/linux/path_text.h"

#include <utf8.h>

#include "platform/text.h"

namespace qlx::platform {
namespace {

constexpr wchar_t kEscapeBase = 0xDC00;

bool IsEscapedByte(wchar_t c) {
  return c >= kEscapeBase + 0x80 && c <= kEscapeBase + 0xFF;
}

}  // namespace

std::wstring PathText(std::string_view bytes) {
  std::wstring text;
  while (!bytes.empty()) {
    const auto bad = utf8::find_invalid(bytes.begin(), bytes.end());
    const auto valid = static_cast<std::size_t>(bad - bytes.begin());
    text += FromUtf8(bytes.substr(0, valid));
    bytes.remove_prefix(valid);
    if (bytes.empty()) break;
    text += static_cast<wchar_t>(kEscapeBase + static_cast<unsigned char>(bytes.front()));
    bytes.remove_prefix(1);
  }
  return text;
}

std::string PathBytes(std::wstring_view text) {
  std::string bytes;
  while (!text.empty()) {
    std::size_t plain = 0;
    while (plain < text.size() && !IsEscapedByte(text[plain])) ++plain;
    bytes += ToUtf8(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) break;
    bytes += static_cast<char>(text.front() - kEscapeBase);
    text.remove_prefix(1);
  }
  return bytes;
}

}  // namespace qlx::platform
