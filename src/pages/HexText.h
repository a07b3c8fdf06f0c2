// The text of a field for hexadecimal bytes, and what every edit makes of it and its caret: no window needed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qlx {

/// Most bytes of a field, and the characters that they take: two digits each, a blank between two bytes.
inline constexpr std::size_t kHexBytes = 16;
inline constexpr std::size_t kHexLength = kHexBytes * 3 - 1;

/// A text with its selection [start, end), counted in characters; the caret stands at `end`. After every edit
/// the text is laid out: its digits in pairs from the left with one blank between them, an odd digit alone at
/// the end.
struct HexText {
  std::wstring text;
  std::size_t start = 0;
  std::size_t end = 0;

  bool operator==(const HexText&) const = default;
};

/// Where Reformat puts the caret when it changes the text.
enum class CaretMode {
  kTyped = 0,            ///< behind the digit that was typed
  kDeletedBackward = 1,  ///< as kTyped, and a deletion just behind a blank steps over the blank too
  kDeletedForward = 2,   ///< where the deletion was, behind a blank; also for a text that was loaded
  kEnd = 3,
};

/// Lays `edited` out. A text that is laid out already keeps its caret. `saved_start` is the start of the
/// selection before the edit; only kDeletedBackward asks for it.
HexText Reformat(HexText edited, CaretMode mode, std::size_t saved_start = 0);

// The edits. Each takes the field before the edit and replaces its selection where it has one.

/// A character from the keyboard; letters become upper case. What is no digit, and a digit that a full field
/// has no room for, changes nothing.
HexText TypeInto(const HexText& field, wchar_t character);
/// The Backspace key.
HexText DeleteBackward(const HexText& field);
/// The Delete key.
HexText DeleteForward(const HexText& field);
/// Takes the selection out as Backspace does; the clipboard is the caller's.
HexText CutFrom(const HexText& field);
/// Takes the selection out as the Delete key does.
HexText ClearIn(const HexText& field);
/// Inserts what is hexadecimal in `pasted`, as far as there is room for it. The caret ends behind the text.
HexText PasteInto(const HexText& field, std::wstring_view pasted);

/// `text` without blanks.
std::wstring WithoutBlanks(std::wstring_view text);

/// True for an even number of digits, upper case only, beside any number of blanks; so for the empty text.
bool IsValidHex(std::wstring_view text);

/// A text from the file as a field shows it: laid out, or empty when it is not valid.
std::wstring LoadedHex(std::wstring_view text);

}  // namespace qlx
