#include "pages/CFileDialogEx.h"

#include <utility>

#include <wx/arrstr.h>
#include <wx/choice.h>
#include <wx/stattext.h>

#include "controls/accessible_id.h"
#include "controls/translation.h"
#include "pages/logo_station.h"
#include "platform/image_file.h"

namespace qlx {
namespace {

constexpr char kEndings[] = "*.bmp;*.jpg;*.gif";

wxString Filter() {
  return _("Image Files (*.bmp; *.jpg; *.gif)") + "|" + kEndings;
}

}  // namespace

CFileDialogEx::CFileDialogEx(wxWindow* parent, IsPicture is_picture)
    : wxFileDialog(parent, _("Select a file"), "", "", Filter(), wxFD_OPEN | wxFD_FILE_MUST_EXIST),
      is_picture_(std::move(is_picture)) {
  SetCustomizeHook(*this);
}

bool CFileDialogEx::CanBeDecoded(const std::wstring& path) {
  return platform::DecodeImageFile(path).has_value();
}

void CFileDialogEx::AddCustomControls(wxFileDialogCustomize& customizer) {
  wxArrayString choices;
  for (const EncodeChoice& choice : kEncodeChoices) choices.push_back(Translated(choice.text));
  customizer.AddStaticText(_("Encode:"));
  list_ = customizer.AddChoice(choices.size(), &choices[0]);
  list_->SetSelection(0);
  list_->Disable();
  CallAfter(&CFileDialogEx::PublishControls);
}

/// Where the toolkit makes windows of the controls, and once it has.
void CFileDialogEx::PublishControls() {
  wxWindow* const controls = GetExtraControl();
  if (controls == nullptr) return;
  for (wxWindow* control : controls->GetChildren()) {
    if (dynamic_cast<wxStaticText*>(control) != nullptr) control->SetId(kEncodeLabel);
    if (dynamic_cast<wxChoice*>(control) == nullptr) continue;
    control->SetId(kEncodeList);
    SetAccessibleName(*control, _("Encode:"));
  }
  PublishIds(*controls);
}

void CFileDialogEx::UpdateCustomControls() {
  const wxString chosen = GetCurrentlySelectedFilename();
  if (chosen == tried_) return;
  tried_ = chosen;
  list_->Enable(!chosen.empty() && is_picture_(chosen.ToStdWstring()));
}

void CFileDialogEx::TransferDataFromCustomControls() {
  encode_choice_ = list_->GetSelection();
}

}  // namespace qlx
