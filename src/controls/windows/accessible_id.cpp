#include "controls/accessible_id.h"

#include <wx/access.h>

namespace qlx {
namespace {

/// What the native control tells a screen reader, but for the texts that the tool gave it.
class OwnTexts final : public wxAccessible {
 public:
  using wxAccessible::wxAccessible;

  wxString name;
  wxString description;

 private:
  wxAccStatus GetName(int child, wxString* text) override { return Tell(child, name, text); }
  wxAccStatus GetDescription(int child, wxString* text) override { return Tell(child, description, text); }

  /// Parts of the control, such as the rows of a list, have texts of their own.
  static wxAccStatus Tell(int child, const wxString& own, wxString* text) {
    if (child != wxACC_SELF || own.empty()) return wxACC_NOT_IMPLEMENTED;
    *text = own;
    return wxACC_OK;
  }
};

OwnTexts& TextsOf(wxWindow& control) {
  auto* texts = static_cast<OwnTexts*>(control.GetAccessible());
  if (texts == nullptr) {
    texts = new OwnTexts(&control);
    control.SetAccessible(texts);
  }
  return *texts;
}

}  // namespace

/// The toolkit's number is the control id of the native window.
void PublishIds(wxWindow&) {}

void SetAccessibleName(wxWindow& control, const wxString& name) {
  TextsOf(control).name = name;
}

void SetAccessibleDescription(wxWindow& control, const wxString& description) {
  TextsOf(control).description = description;
}

}  // namespace qlx
