// F1 opens the guide at the chapter of the window that the user is in.
#pragma once

#include <string>
#include <string_view>

#include <wx/event.h>

namespace qlx {

/// A window that has a chapter of its own in the guide; what is in it or was opened from it shares the
/// chapter unless it has one too.
class HasHelp {
 public:
  /// The chapter's name in the book; lives as long as the program.
  virtual std::wstring_view help_chapter() const = 0;

 protected:
  HasHelp() = default;
  HasHelp(const HasHelp&) = default;
  HasHelp& operator=(const HasHelp&) = default;
  ~HasHelp() = default;
};

/// From now on F1 in any window of `application` opens the book in `folder` over that window. A book that is
/// missing or damaged is told in a box. User-interface thread.
void OpenHelpByF1(wxEvtHandler& application, const std::wstring& folder);

}  // namespace qlx
