// The small window that shows that something is happening while the services restart.
#pragma once

#include <wx/dialog.h>
#include <wx/gauge.h>
#include <wx/timer.h>

namespace qlx {

/// Caption "In Progress...", one endless progress bar. Whoever started the operation creates and destroys it;
/// the user cannot close it.
class CProgressDialog : public wxDialog {
 public:
  static constexpr int kBarId = 1087;

  explicit CProgressDialog(wxWindow* parent);

 private:
  wxGauge* bar_;
  wxTimer marquee_;
};

}  // namespace qlx
