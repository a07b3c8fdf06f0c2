#include "tests/ui/windows/driver/line_protocol.h"

#include <utility>

#include "platform/text.h"

namespace qlx::driver {
namespace {

constexpr std::pair<wchar_t, wchar_t> kEscapes[] = {
    {L'\\', L'\\'}, {L'\t', L't'}, {L'\n', L'n'}, {L'\r', L'r'}};

void AppendEscaped(std::wstring& line, wchar_t character) {
  for (const auto& [meant, written] : kEscapes) {
    if (character != meant) continue;
    line += L'\\';
    line += written;
    return;
  }
  line += character;
}

wchar_t Unescaped(wchar_t written) {
  for (const auto& [meant, code] : kEscapes) {
    if (code == written) return meant;
  }
  return written;
}

}  // namespace

Fields ParseLine(std::string_view line) {
  Fields fields(1);
  bool escaped = false;
  for (const wchar_t character : platform::FromUtf8(line)) {
    if (escaped) {
      fields.back() += Unescaped(character);
      escaped = false;
    } else if (character == L'\\') {
      escaped = true;
    } else if (character == L'\t') {
      fields.emplace_back();
    } else if (character != L'\r') {
      fields.back() += character;
    }
  }
  return fields;
}

std::string FormatLine(const Fields& fields) {
  std::wstring line;
  for (const std::wstring& field : fields) {
    if (&field != &fields.front()) line += L'\t';
    for (const wchar_t character : field) AppendEscaped(line, character);
  }
  return platform::ToUtf8(line);
}

}  // namespace qlx::driver
