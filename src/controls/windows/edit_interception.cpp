#include "controls/edit_interception.h"

#include <optional>
#include <utility>

#include "controls/windows/edit_messages.h"

namespace qlx {
namespace {

/// Replaces the characters [start, end) of the field; false leaves it to the field.
bool Replace(const EditMaker& maker, HWND edit, EditSelection place, const std::wstring& inserted) {
  const bool erased =
      place.start < place.end && maker.erase(static_cast<long>(place.start), static_cast<long>(place.end));
  if (inserted.empty()) return erased;
  const std::optional<long> caret = maker.insert(static_cast<long>(place.start), inserted);
  if (!caret) return false;
  SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(*caret), *caret);
  return true;
}

std::optional<LRESULT> Handle(const EditMaker& maker, const EditMessage& message) {
  switch (message.number) {
    case EM_REPLACESEL:
      if (Replace(maker, message.edit, SelectionOf(message.edit), message.text())) return 0;
      break;
    case WM_CLEAR:
      if (Replace(maker, message.edit, SelectionOf(message.edit), {})) return 0;
      break;
    case WM_SETTEXT:
      if (Replace(maker, message.edit, {0, TextOf(message.edit).size()}, message.text())) return TRUE;
      break;
    case EM_UNDO:
    case WM_UNDO:
      return FALSE;  // the field knows of no edit that it could take back
    default:
      break;
  }
  return std::nullopt;
}

}  // namespace

void InterceptEdits(wxTextCtrl& control, EditMaker maker) {
  control.Bind(wxEVT_CHAR, [type = maker.type](wxKeyEvent& event) {
    const auto character = static_cast<wchar_t>(event.GetUnicodeKey());
    if (!IsPrintable(character) || !type(character)) event.Skip();
  });
  HandleEditMessages(
      control, [maker = std::move(maker)](const EditMessage& message) { return Handle(maker, message); });
}

}  // namespace qlx
