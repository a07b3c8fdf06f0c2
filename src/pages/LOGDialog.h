// The "Logging" page.
#pragma once

#include "controls/help_book.h"
#include "pages/LOGSettings.h"
#include "pages/PageView.h"

namespace qlx {

/// Edits the log file, the logging service's port, the level and the modules that log.
class LOGDialog : public PageView {
 public:
  LOGDialog(wxWindow* parent, FatalEnd end_program);

  std::wstring_view help_chapter() const override { return kLoggingChapter; }

 private:
  wxSizer* MakeSettings();
  wxSizer* MakeModules();

  LOGSettings settings_;
};

}  // namespace qlx
