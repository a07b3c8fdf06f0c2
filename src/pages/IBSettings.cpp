#include "pages/IBSettings.h"

#include <array>
#include <cwchar>

#include "config/Message.h"
#include "pages/HexText.h"
#include "platform/text.h"

namespace qlx {
namespace {

using enum SettingForm;

constexpr std::size_t kIdentifierBytes = 16;
constexpr std::size_t kDelimiters = 5;

constexpr PageFacts kFacts = {
    .section = L"IB_Configuration",
    .no_document = Translatable(L"Error loading iButton settings!\nExiting program."),
    .edit_not_converted = Translatable(L"Error converting iButton Combo Box settings!\nExiting program."),
    .choice_not_converted = Translatable(L"Error converting iButton Combo Box settings!\nExiting program."),
    .saved = Translatable(L"iButton settings saved."),
};

constexpr SettingRow kRows[] = {
    {IBSettings::kStart, L"ID_Start", kOrdinal, kIdentifierBytes},
    {IBSettings::kLength, L"ID_Length", kOrdinal, kIdentifierBytes},
    {IBSettings::kPrefix, L"Prefix", kHex, kHexBytes * 2},
    {IBSettings::kSuffix, L"Suffix", kHex, kHexBytes * 2},
    {IBSettings::kDelimiter, L"Delimiter", kChoice, kDelimiters},
    {IBSettings::kOnRemove, L"OnRemove", kHex, kHexBytes * 2},
};

struct ByteString {
  int control;
  std::wstring_view refusal;
};

constexpr ByteString kByteStrings[] = {
    {IBSettings::kPrefix,
     Translatable(L"\"Prefix\" needs to be a valid hex string.\niButton settings NOT saved.")},
    {IBSettings::kSuffix,
     Translatable(L"\"Suffix\" needs to be a valid hex string.\niButton settings NOT saved.")},
    {IBSettings::kOnRemove,
     Translatable(L"\"On Remove\" needs to be a valid hex string.\niButton settings NOT saved.")},
};

}  // namespace

IBSettings::IBSettings() : PageSettings(kFacts, kRows) {}

std::optional<Refusal> IBSettings::FindRefusal() const {
  for (const ByteString& field : kByteStrings) {
    if (!IsValidHex(Text(field.control))) return Refusal{field.control, std::wstring(field.refusal)};
  }
  return std::nullopt;
}

std::wstring AsciiToHex(std::wstring_view text) {
  std::wstring codes;
  for (const char16_t code : platform::ToUtf16(text)) {
    if (!codes.empty()) codes += L' ';
    std::array<wchar_t, 5> digits{};
    std::swprintf(digits.data(), digits.size(), L"%X", static_cast<unsigned>(code));
    codes += digits.data();
  }
  return codes;
}

}  // namespace qlx
