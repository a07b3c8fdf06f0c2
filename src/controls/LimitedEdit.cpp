#include "controls/LimitedEdit.h"

#include <algorithm>

#include "controls/field_size.h"
#include "controls/insertion_filter.h"
#include "platform/text.h"

namespace qlx {
namespace {

constexpr std::size_t kWidestField = 30;  // characters; longer text scrolls

}  // namespace

LimitedEdit::LimitedEdit(wxWindow* parent, int id, const InsertionRule& rule, long style)
    : wxTextCtrl(parent, id, wxEmptyString, wxDefaultPosition, wxDefaultSize, style), rule_(rule) {
  FilterInsertions(*this, [this](const std::wstring& held, const std::wstring& inserted) {
    return filtering_ ? AcceptedInsertion(rule_, platform::Utf16Length(held), inserted) : inserted;
  });
  InvalidateBestSize();
  SetInitialSize(LimitedEdit::DoGetBestSize());
}

wxSize LimitedEdit::DoGetBestSize() const {
  return FieldSize(*this, std::min(rule_.limit, kWidestField));
}

void LimitedEdit::SetText(const std::wstring& text) {
  filtering_ = false;
  ChangeValue(text);
  filtering_ = true;
}

}  // namespace qlx
