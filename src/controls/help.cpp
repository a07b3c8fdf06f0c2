#include "controls/help.h"

#include <wx/window.h>

#include "controls/HelpDialog.h"
#include "controls/help_book.h"

namespace qlx {
namespace {

/// Of the nearest window that has one, from `window` outwards, through the windows that it was opened from.
std::wstring_view ChapterOf(wxWindow* window) {
  for (; window != nullptr; window = window->GetParent()) {
    if (const auto* helped = dynamic_cast<const HasHelp*>(window)) return helped->help_chapter();
  }
  return {};
}

void ShowHelp(wxWindow& window, const std::wstring& folder) {
  wxWindow* const parent = wxGetTopLevelParent(&window);
  const std::wstring_view chapter = ChapterOf(&window);
  const auto book = ReadHelpBook(folder);
  if (!book) return TellMissing(parent, ContentsPath(folder));
  if (!ReadChapter(*book, chapter)) return TellMissing(parent, ChapterPath(folder, chapter));
  HelpDialog dialog(parent, *book);
  dialog.Open(chapter);
  dialog.ShowModal();
}

}  // namespace

void OpenHelpByF1(wxEvtHandler& application, const std::wstring& folder) {
  application.Bind(wxEVT_CHAR_HOOK, [folder](wxKeyEvent& event) {
    auto* window = dynamic_cast<wxWindow*>(event.GetEventObject());
    if (event.GetKeyCode() != WXK_F1 || event.HasAnyModifiers() || window == nullptr) return event.Skip();
    ShowHelp(*window, folder);
  });
}

}  // namespace qlx
