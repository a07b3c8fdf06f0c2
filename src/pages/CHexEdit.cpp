#include "pages/CHexEdit.h"

#include <utility>

#include <wx/clipbrd.h>
#include <wx/utils.h>

#include "controls/edit_interception.h"
#include "controls/field_size.h"

namespace qlx {

CHexEdit::CHexEdit(wxWindow* parent, int id) : wxTextCtrl(parent, id) {
  BindKeys();
  BindClipboard();
  InterceptOtherEdits();
  InvalidateBestSize();
  SetInitialSize(OwnSize());
}

wxSize CHexEdit::OwnSize() const {
  return FieldSize(*this, kHexLength);
}

void CHexEdit::SetText(const std::wstring& text) {
  setting_ = true;
  ChangeValue(text);
  setting_ = false;
}

HexText CHexEdit::Field() const {
  long start = 0;
  long end = 0;
  GetSelection(&start, &end);
  return {Text(), static_cast<std::size_t>(start), static_cast<std::size_t>(end)};
}

void CHexEdit::ShowField(const HexText& field) {
  if (field == Field()) return wxBell();
  SetText(field.text);
  SetInsertionPoint(static_cast<long>(field.end));
}

void CHexEdit::BindKeys() {
  Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& event) {
    const bool plain = event.GetModifiers() == wxMOD_NONE;
    const int key = event.GetKeyCode();
    if (key == WXK_BACK && (plain || event.GetModifiers() == wxMOD_SHIFT)) {
      ShowField(DeleteBackward(Field()));
    } else if ((key == WXK_DELETE || key == WXK_NUMPAD_DELETE) && plain) {
      ShowField(DeleteForward(Field()));
    } else {
      event.Skip();
    }
  });
}

void CHexEdit::BindClipboard() {
  Bind(wxEVT_TEXT_CUT, [this](wxClipboardTextEvent&) {
    Copy();
    ShowField(CutFrom(Field()));
  });
  Bind(wxEVT_TEXT_PASTE, [this](wxClipboardTextEvent&) { PasteFromClipboard(); });
}

void CHexEdit::PasteFromClipboard() {
  const wxClipboardLocker clipboard;
  wxTextDataObject data;
  if (!clipboard || !wxTheClipboard->GetData(data)) return;
  ShowField(PasteInto(Field(), data.GetText().ToStdWstring()));
}

void CHexEdit::InterceptOtherEdits() {
  EditMaker maker;
  maker.type = [this](wchar_t character) {
    ShowField(TypeInto(Field(), character));
    return true;
  };
  maker.insert = [this](long position, const std::wstring& inserted) { return Insert(position, inserted); };
  maker.erase = [this](long start, long end) { return Erase(start, end); };
  InterceptEdits(*this, std::move(maker));
}

std::optional<long> CHexEdit::Insert(long position, const std::wstring& inserted) {
  if (setting_) return std::nullopt;
  const auto at = static_cast<std::size_t>(position);
  const HexText field = {Text(), at, at};
  // One character may be a digit of an input method, more of them are pasted or dropped.
  ShowField(inserted.size() == 1 ? TypeInto(field, inserted.front()) : PasteInto(field, inserted));
  return GetInsertionPoint();
}

bool CHexEdit::Erase(long start, long end) {
  if (setting_) return false;
  ShowField(ClearIn({Text(), static_cast<std::size_t>(start), static_cast<std::size_t>(end)}));
  return true;
}

}  // namespace qlx
