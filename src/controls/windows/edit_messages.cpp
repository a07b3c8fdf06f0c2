#include "controls/windows/edit_messages.h"

#include <utility>

#include <commctrl.h>

namespace qlx {
namespace {

constexpr wchar_t kFirstPrintable = 0x20;
constexpr wchar_t kDelete = 0x7F;

LRESULT CALLBACK Handle(HWND edit, UINT number, WPARAM wparam, LPARAM lparam, UINT_PTR id, DWORD_PTR data) {
  auto* handler = reinterpret_cast<EditHandler*>(data);
  if (number == WM_NCDESTROY) {
    RemoveWindowSubclass(edit, Handle, id);
    delete handler;
    return DefSubclassProc(edit, number, wparam, lparam);
  }
  const EditMessage message = {edit, number, wparam, lparam};
  const std::optional<LRESULT> result = (*handler)(message);
  return result ? *result : message.Forward();
}

}  // namespace

LRESULT EditMessage::Forward(UINT other, WPARAM other_wparam, LPARAM other_lparam) const {
  return DefSubclassProc(edit, other, other_wparam, other_lparam);
}

std::wstring EditMessage::text() const {
  const auto* carried = reinterpret_cast<const wchar_t*>(lparam);
  return carried == nullptr ? std::wstring() : carried;
}

void HandleEditMessages(wxTextCtrl& control, EditHandler handler) {
  auto* owned = new EditHandler(std::move(handler));
  SetWindowSubclass(control.GetHWND(), Handle, 0, reinterpret_cast<DWORD_PTR>(owned));
}

EditSelection SelectionOf(HWND edit) {
  DWORD start = 0;
  DWORD end = 0;
  SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  return {start, end};
}

std::wstring TextOf(HWND edit) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(edit)) + 1, L'\0');
  const int length = GetWindowTextW(edit, text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

bool IsPrintable(wchar_t character) {
  return character >= kFirstPrintable && character != kDelete;
}

}  // namespace qlx
