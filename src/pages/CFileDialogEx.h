// The open dialog for logos: a picture file and how it is to become a logo.
#pragma once

#include <functional>
#include <string>

#include <wx/filedlg.h>
#include <wx/filedlgcustomize.h>

namespace qlx {

/// The system's own dialog for an existing file, with the list "Encode:" below. The list can be used while
/// the chosen file is a picture that can be read, which is tried on the user-interface thread: the largest
/// pictures take half a second each.
class CFileDialogEx : public wxFileDialog, private wxFileDialogCustomizeHook {
 public:
  static constexpr int kEncodeList = 1084;
  static constexpr int kEncodeLabel = 1085;

  using IsPicture = std::function<bool(const std::wstring& path)>;

  explicit CFileDialogEx(wxWindow* parent, IsPicture is_picture = CanBeDecoded);

  /// The file that was chosen.
  std::wstring path() const { return GetPath().ToStdWstring(); }
  /// The index in kEncodeChoices that was selected when the dialog closed; 0 before.
  int encode_choice() const { return encode_choice_; }

 private:
  static bool CanBeDecoded(const std::wstring& path);

  void AddCustomControls(wxFileDialogCustomize& customizer) override;
  void UpdateCustomControls() override;
  void TransferDataFromCustomControls() override;
  void PublishControls();

  IsPicture is_picture_;
  wxFileDialogChoice* list_ = nullptr;
  wxString tried_;  ///< the file that the list's state is for
  int encode_choice_ = 0;
};

}  // namespace qlx
