// The about box.
#pragma once

#include <wx/dialog.h>

namespace qlx {

class CAboutDlg : public wxDialog {
 public:
  explicit CAboutDlg(wxWindow* parent);
};

}  // namespace qlx
