// The text field for hexadecimal bytes.
#pragma once

#include <optional>
#include <string>

#include <wx/textctrl.h>

#include "pages/HexText.h"

namespace qlx {

/// The window of a HexText: every edit, from the keyboard, the clipboard, a drop or an input method, leaves
/// the text laid out in pairs of digits.
class CHexEdit : public wxTextCtrl {
 public:
  CHexEdit(wxWindow* parent, int id);

  /// Shows `text` as it stands, whatever its layout and length.
  void SetText(const std::wstring& text);
  std::wstring Text() const { return GetValue().ToStdWstring(); }

 private:
  wxSize DoGetBestSize() const override { return OwnSize(); }
  wxSize OwnSize() const;

  void BindKeys();
  void BindClipboard();
  void InterceptOtherEdits();
  HexText Field() const;
  void ShowField(const HexText& field);
  void PasteFromClipboard();
  /// An insertion and an erasure that did not come by a key or the clipboard; the caret afterwards, or false
  /// and empty for the class's own.
  std::optional<long> Insert(long position, const std::wstring& inserted);
  bool Erase(long start, long end);

  bool setting_ = false;  ///< the text is being changed by ShowField or SetText
};

}  // namespace qlx
