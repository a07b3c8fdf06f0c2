#include "controls/message_box.h"

#include <wx/msgdlg.h>

namespace qlx {
namespace {

long IconStyle(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kInformation:
      return wxICON_INFORMATION;
    case BoxIcon::kExclamation:
      return wxICON_EXCLAMATION;
    case BoxIcon::kError:
      return wxICON_ERROR;
    case BoxIcon::kNone:
      break;
  }
  return wxICON_NONE;
}

}  // namespace

void ShowBox(wxWindow* parent, const std::wstring& text, BoxIcon icon, const std::wstring& title) {
  wxMessageDialog box(parent, text, title, wxOK | wxCENTRE | IconStyle(icon));
  box.SetOKLabel(_("&OK"));
  box.ShowModal();
}

std::optional<bool> AskYesNo(wxWindow* parent, const std::wstring& question) {
  wxMessageDialog box(parent, question, Translated(kProgramTitle), wxYES_NO | wxCENTRE | wxICON_QUESTION);
  box.SetYesNoLabels(_("&Yes"), _("&No"));
  switch (box.ShowModal()) {
    case wxID_YES:
      return true;
    case wxID_NO:
      return false;
    default:
      return std::nullopt;
  }
}

}  // namespace qlx
