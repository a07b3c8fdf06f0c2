// The window of the guide.
#pragma once

#include <string>
#include <string_view>

#include <wx/dialog.h>
#include <wx/html/htmlwin.h>
#include <wx/listbox.h>

#include "controls/help_book.h"

namespace qlx {

/// Tells in a box over `parent` that the book's file `path` is not there as it should be.
void TellMissing(wxWindow* parent, const std::wstring& path);

/// Shows one chapter, beside the list of all.
class HelpDialog : public wxDialog {
 public:
  HelpDialog(wxWindow* parent, HelpBook book);

  /// Shows the chapter called `name`; false when it cannot be read, which is told, and what was shown stays.
  bool Open(std::wstring_view name);

 private:
  void LayOut();
  wxSize PageSize() const;
  void BindEvents();
  void OpenLink(const wxString& target);
  /// The list shows again what the page does.
  void SelectShown();

  HelpBook book_;
  std::size_t shown_ = 0;  ///< index of the chapter
  wxListBox* chapters_;
  wxHtmlWindow* page_;
};

}  // namespace qlx
