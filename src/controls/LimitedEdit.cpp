#include "controls/LimitedEdit.h"

#include <algorithm>

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
  // The toolkit has already settled on a size in fixed pixels, which cuts enlarged text off.
  InvalidateBestSize();
  SetInitialSize(LimitedEdit::DoGetBestSize());
}

wxSize LimitedEdit::DoGetBestSize() const {
  const auto characters = static_cast<int>(std::min(rule_.limit, kWidestField)) + 2;
  const int height = GetCharHeight() + GetCharHeight() / 2;
  return {characters * GetTextExtent("0").x + height / 2, height};
}

void LimitedEdit::SetText(const std::wstring& text) {
  filtering_ = false;
  ChangeValue(text);
  filtering_ = true;
}

}  // namespace qlx
