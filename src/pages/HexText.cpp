#include "pages/HexText.h"

#include <algorithm>

namespace qlx {
namespace {

constexpr std::size_t kGroup = 3;  // two digits and the blank behind them

bool IsHexDigit(wchar_t c) {
  return (c >= L'0' && c <= L'9') || (c >= L'A' && c <= L'F');
}

wchar_t UpperCase(wchar_t c) {
  return c >= L'a' && c <= L'f' ? static_cast<wchar_t>(c - L'a' + L'A') : c;
}

std::wstring DigitsOf(std::wstring_view text) {
  std::wstring digits;
  for (const wchar_t c : text) {
    if (IsHexDigit(UpperCase(c))) digits += UpperCase(c);
  }
  return digits;
}

/// A position of the laid-out text as one of its digits alone. The extra one where a group begins stands for
/// the digit that has just been typed in front of a blank.
std::size_t DigitPosition(std::size_t position, CaretMode mode) {
  const std::size_t blanks = position / kGroup;
  const bool group_begins = position % kGroup == 0 && mode != CaretMode::kDeletedForward;
  return position - blanks + (group_begins ? 1 : 0);
}

void InsertBlanks(HexText& digits) {
  for (std::size_t at = kGroup - 1; at < digits.text.size(); at += kGroup) {
    digits.text.insert(at, 1, L' ');
    if (digits.start > at) ++digits.start;
    if (digits.end > at) ++digits.end;
  }
}

std::size_t CaretFor(const HexText& laid_out, CaretMode mode, std::size_t saved_start) {
  switch (mode) {
    case CaretMode::kTyped:
      break;
    case CaretMode::kDeletedBackward:
      if (saved_start % kGroup == 1) return saved_start - 1;
      break;
    case CaretMode::kDeletedForward: {
      const bool at_blank = laid_out.start < laid_out.text.size() && laid_out.text[laid_out.start] == L' ';
      return laid_out.start + (at_blank ? 1 : 0);
    }
    case CaretMode::kEnd:
      return laid_out.text.size();
  }
  return laid_out.end;
}

HexText WithCaret(std::wstring text, std::size_t caret) {
  caret = std::min(caret, text.size());
  return {std::move(text), caret, caret};
}

/// What any text field does: `inserted` in the place of the selection, the caret behind it.
HexText Replaced(const HexText& field, std::wstring_view inserted) {
  std::wstring text = field.text;
  text.replace(field.start, field.end - field.start, inserted);
  return WithCaret(std::move(text), field.start + inserted.size());
}

}  // namespace

HexText Reformat(HexText edited, CaretMode mode, std::size_t saved_start) {
  HexText laid_out = {WithoutBlanks(edited.text), DigitPosition(edited.start, mode),
                      DigitPosition(edited.end, mode)};
  InsertBlanks(laid_out);
  if (laid_out.text == edited.text) return edited;
  const std::size_t caret = CaretFor(laid_out, mode, saved_start);
  return WithCaret(std::move(laid_out.text), caret);
}

HexText TypeInto(const HexText& field, wchar_t character) {
  const wchar_t digit = UpperCase(character);
  if (!IsHexDigit(digit)) return field;
  HexText typed = Replaced(field, {&digit, 1});
  // Counted in digits: one that takes a selected blank's place would make the text no longer before the
  // layout.
  const bool full = WithoutBlanks(typed.text).size() > kHexBytes * 2;
  return full ? field : Reformat(std::move(typed), CaretMode::kTyped);
}

HexText DeleteBackward(const HexText& field) {
  HexText deletion = field;
  if (deletion.start == deletion.end && deletion.start > 0) --deletion.start;
  return Reformat(Replaced(deletion, {}), CaretMode::kDeletedBackward, field.start);
}

HexText DeleteForward(const HexText& field) {
  HexText deletion = field;
  if (deletion.start == deletion.end && deletion.end < deletion.text.size()) ++deletion.end;
  return ClearIn(deletion);
}

HexText CutFrom(const HexText& field) {
  return Reformat(Replaced(field, {}), CaretMode::kDeletedBackward, field.start);
}

HexText ClearIn(const HexText& field) {
  return Reformat(Replaced(field, {}), CaretMode::kDeletedForward);
}

HexText PasteInto(const HexText& field, std::wstring_view pasted) {
  const std::wstring before = DigitsOf(std::wstring_view(field.text).substr(0, field.start));
  const std::wstring after = DigitsOf(std::wstring_view(field.text).substr(field.end));
  const std::size_t held = before.size() + after.size();
  const std::size_t room = kHexBytes * 2 > held ? kHexBytes * 2 - held : 0;
  HexText digits = {before + DigitsOf(pasted).substr(0, room) + after};
  InsertBlanks(digits);
  const std::size_t end = digits.text.size();
  return WithCaret(std::move(digits.text), end);
}

std::wstring WithoutBlanks(std::wstring_view text) {
  std::wstring digits(text);
  std::erase(digits, L' ');
  return digits;
}

bool IsValidHex(std::wstring_view text) {
  const std::wstring digits = WithoutBlanks(text);
  return digits.size() % 2 == 0 && std::ranges::all_of(digits, IsHexDigit);
}

std::wstring LoadedHex(std::wstring_view text) {
  return IsValidHex(text) ? Reformat({std::wstring(text)}, CaretMode::kDeletedForward).text : std::wstring();
}

}  // namespace qlx
