// The about box.
#pragma once

#include <wx/button.h>
#include <wx/dialog.h>

namespace qlx {

class CAboutDlg : public wxDialog {
 public:
  explicit CAboutDlg(wxWindow* parent);

 private:
  wxButton* MakeButton();
};

}  // namespace qlx
