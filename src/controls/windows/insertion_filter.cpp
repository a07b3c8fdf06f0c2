#include "controls/insertion_filter.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <wx/clipbrd.h>

#include "controls/windows/edit_messages.h"

namespace qlx {
namespace {

bool IsHighSurrogate(wchar_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

std::wstring WithoutSelection(HWND edit) {
  const EditSelection selection = SelectionOf(edit);
  return TextOf(edit).erase(selection.start, selection.end - selection.start);
}

/// What turns `before` into `after`: the text that both have, and what is in `after` only.
std::pair<std::wstring, std::wstring> Difference(const std::wstring& before, const std::wstring& after) {
  const auto start = std::ranges::mismatch(before, after);
  const std::wstring_view old(start.in1, before.end());
  const std::wstring_view fresh(start.in2, after.end());
  const auto same_end = std::mismatch(old.rbegin(), old.rend(), fresh.rbegin(), fresh.rend());
  const std::wstring inserted(fresh.begin(), same_end.second.base());
  return {std::wstring(before.begin(), start.in1) + std::wstring(same_end.first.base(), old.end()), inserted};
}

/// Undoing brings text back that may have become too much meanwhile.
LRESULT Undo(const InsertionFilter& filter, const EditMessage& message) {
  const std::wstring before = TextOf(message.edit);
  const LRESULT undone = message.Forward();
  const auto [held, inserted] = Difference(before, TextOf(message.edit));
  if (filter(held, inserted) == inserted) return undone;
  MessageBeep(MB_OK);
  return message.Forward();  // the field undoes an undo
}

LRESULT Insert(const InsertionFilter& filter, const EditMessage& message, const std::wstring& held) {
  const std::wstring inserted = message.text();
  const std::wstring accepted = filter(held, inserted);
  if (accepted.empty() && !inserted.empty()) {
    MessageBeep(MB_OK);
    return 0;
  }
  return message.Forward(message.number, message.wparam, reinterpret_cast<LPARAM>(accepted.c_str()));
}

std::optional<LRESULT> Handle(const InsertionFilter& filter, const EditMessage& message) {
  switch (message.number) {
    case EM_REPLACESEL:
      return Insert(filter, message, WithoutSelection(message.edit));
    case WM_SETTEXT:
      return Insert(filter, message, {});
    case EM_UNDO:
    case WM_UNDO:
      return Undo(filter, message);
    default:
      return std::nullopt;
  }
}

/// A character outside the basic plane comes as two, which are inserted together or not at all.
void FilterTyping(wxTextCtrl& control) {
  auto high = std::make_shared<wchar_t>(L'\0');
  control.Bind(wxEVT_CHAR, [&control, high](wxKeyEvent& event) {
    const auto unit = static_cast<wchar_t>(event.GetUnicodeKey());
    if (!control.IsEditable() || !IsPrintable(unit)) return event.Skip();
    const wchar_t first = std::exchange(*high, IsHighSurrogate(unit) ? unit : L'\0');
    if (*high != L'\0') return;
    control.WriteText(first == L'\0' ? std::wstring{unit} : std::wstring{first, unit});
  });
}

/// The field's own pasting inserts without another message.
void FilterPasting(wxTextCtrl& control) {
  control.Bind(wxEVT_TEXT_PASTE, [&control](wxClipboardTextEvent&) {
    wxTextDataObject data;
    const wxClipboardLocker clipboard;
    if (!control.IsEditable() || !clipboard || !wxTheClipboard->GetData(data)) return;
    control.WriteText(data.GetText());
  });
}

}  // namespace

void FilterInsertions(wxTextCtrl& control, InsertionFilter filter) {
  FilterTyping(control);
  FilterPasting(control);
  HandleEditMessages(
      control, [filter = std::move(filter)](const EditMessage& message) { return Handle(filter, message); });
}

}  // namespace qlx
