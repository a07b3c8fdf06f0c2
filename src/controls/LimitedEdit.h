// A single-line text field whose limit binds what the user puts in, never what the program sets.
#pragma once

#include <cstddef>
#include <string>

#include <wx/textctrl.h>

#include "controls/text_insertion.h"

namespace qlx {

/// The toolkit's own maximum length cuts text that is already there; this one does not.
class LimitedEdit : public wxTextCtrl {
 public:
  LimitedEdit(wxWindow* parent, int id, const InsertionRule& rule, long style = 0);

  /// Shows `text` whole and sends no change event.
  void SetText(const std::wstring& text);
  std::wstring Text() const { return GetValue().ToStdWstring(); }

  /// At most `units` UTF-16 code units from now on; longer text that is there stays.
  void SetLimit(std::size_t units) { rule_.limit = units; }

  /// A text that cannot be edited can be reached, selected and copied by keyboard all the same.
  bool AcceptsFocusFromKeyboard() const override { return wxControl::AcceptsFocus(); }

 private:
  /// As wide as the text it may hold, in the text size that the user has chosen.
  wxSize DoGetBestSize() const override;

  InsertionRule rule_;
  bool filtering_ = true;
};

}  // namespace qlx
