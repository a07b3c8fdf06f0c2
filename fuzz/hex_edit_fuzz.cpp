// Any edits in a field for hexadecimal bytes: the text stays laid out and holds the digits that the edit
// left.
#include <algorithm>

#include <fuzzer/FuzzedDataProvider.h>

#include "fuzz/require.h"
#include "pages/HexText.h"

namespace {

using qlx::HexText;
using qlx::Require;
using qlx::WithoutBlanks;

constexpr std::size_t kMostDigits = qlx::kHexBytes * 2;
constexpr wchar_t kCharacters[] = L"0123456789abcdefABCDEF gG-,\n\u00e9\uff11";

enum class Edit { kSelect, kType, kBackspace, kDelete, kCut, kClear, kPaste, kMaxValue = kPaste };

std::wstring Digits(std::wstring_view text) {
  std::wstring digits;
  for (wchar_t c : text) {
    if (c >= L'a' && c <= L'f') c = static_cast<wchar_t>(c - L'a' + L'A');
    if ((c >= L'0' && c <= L'9') || (c >= L'A' && c <= L'F')) digits += c;
  }
  return digits;
}

std::wstring LaidOut(std::wstring_view digits) {
  std::wstring text;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && i % 2 == 0) text += L' ';
    text += digits[i];
  }
  return text;
}

wchar_t TakeCharacter(FuzzedDataProvider& input) {
  return kCharacters[input.ConsumeIntegralInRange<std::size_t>(0, std::size(kCharacters) - 2)];
}

std::wstring TakeText(FuzzedDataProvider& input, std::size_t longest) {
  std::wstring text;
  for (std::size_t left = input.ConsumeIntegralInRange<std::size_t>(0, longest); left > 0; --left)
    text += TakeCharacter(input);
  return text;
}

/// The digits of `field` once those of [start, end) are replaced.
std::wstring Replaced(const HexText& field, std::size_t start, std::size_t end, std::wstring_view digits) {
  return Digits(field.text.substr(0, start)).append(digits) + Digits(field.text.substr(end));
}

void RequireSound(const HexText& field) {
  Require(field.start <= field.end && field.end <= field.text.size());
  Require(field.text == LaidOut(Digits(field.text)));
  Require(Digits(field.text).size() <= kMostDigits);
}

HexText Selected(HexText field, FuzzedDataProvider& input) {
  const std::size_t size = field.text.size();
  const auto one = input.ConsumeIntegralInRange<std::size_t>(0, size);
  const auto other = input.ConsumeBool() ? one : input.ConsumeIntegralInRange<std::size_t>(0, size);
  field.start = std::min(one, other);
  field.end = std::max(one, other);
  return field;
}

HexText Typed(const HexText& field, wchar_t character) {
  const std::wstring expected = Replaced(field, field.start, field.end, Digits({&character, 1}));
  HexText typed = TypeInto(field, character);
  const bool taken = !Digits({&character, 1}).empty() && expected.size() <= kMostDigits;
  Require(taken ? Digits(typed.text) == expected : typed == field);
  return typed;
}

HexText Pasted(const HexText& field, const std::wstring& text) {
  const std::size_t room = kMostDigits - Replaced(field, field.start, field.end, {}).size();
  HexText pasted = PasteInto(field, text);
  Require(Digits(pasted.text) == Replaced(field, field.start, field.end, Digits(text).substr(0, room)));
  Require(pasted.end == pasted.text.size());
  return pasted;
}

/// A deletion by `key` that takes the selection or, without one, the character at its side.
HexText Deleted(const HexText& field, HexText (*key)(const HexText&), bool backward) {
  const bool none = field.start == field.end;
  const std::size_t start = none && backward && field.start > 0 ? field.start - 1 : field.start;
  const std::size_t end = none && !backward && field.end < field.text.size() ? field.end + 1 : field.end;
  HexText deletion = key(field);
  Require(Digits(deletion.text) == Replaced(field, start, end, {}));
  return deletion;
}

HexText WithoutSelection(const HexText& field, HexText (*command)(const HexText&)) {
  HexText left = command(field);
  Require(Digits(left.text) == Replaced(field, field.start, field.end, {}));
  return left;
}

HexText Edited(const HexText& field, FuzzedDataProvider& input) {
  switch (input.ConsumeEnum<Edit>()) {
    case Edit::kSelect:
      return Selected(field, input);
    case Edit::kType:
      return Typed(field, TakeCharacter(input));
    case Edit::kBackspace:
      return Deleted(field, qlx::DeleteBackward, true);
    case Edit::kDelete:
      return Deleted(field, qlx::DeleteForward, false);
    case Edit::kCut:
      return WithoutSelection(field, qlx::CutFrom);
    case Edit::kClear:
      return WithoutSelection(field, qlx::ClearIn);
    case Edit::kPaste:
      return Pasted(field, TakeText(input, kMostDigits * 2));
  }
  return field;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const std::wstring stored = TakeText(input, kMostDigits);
  HexText field = {qlx::LoadedHex(stored)};
  Require(field.text.empty() ||
          (qlx::IsValidHex(stored) && WithoutBlanks(field.text) == WithoutBlanks(stored)));
  RequireSound(field);
  while (input.remaining_bytes() > 0) {
    field = Edited(field, input);
    RequireSound(field);
  }
  return 0;
}
