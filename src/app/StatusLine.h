// The foot of the main window: which file is in use, what is not saved and whether the services run.
#pragma once

#include <string>
#include <vector>

#include <wx/panel.h>
#include <wx/stattext.h>
#include <wx/timer.h>

#include "controls/UiThreadCalls.h"
#include "services/ServiceProbe.h"

namespace qlx {

/// Asks for the state of the services from the moment that it is started, now and then and when it is told
/// to, and never waits for an answer. User-interface thread.
class StatusLine : public wxPanel {
 public:
  explicit StatusLine(wxWindow* parent);
  StatusLine(const StatusLine&) = delete;
  StatusLine& operator=(const StatusLine&) = delete;
  ~StatusLine() override;

  void ShowFile(const std::wstring& path);

  /// `pages` are the texts of the tabs with unsaved changes.
  void ShowUnsaved(const std::vector<std::wstring>& pages);

  /// Asks for the services at once and from then on.
  void AskForServices();

 private:
  void OnTimer();
  void ShowServices(const ServiceStates& states);

  wxStaticText* file_;
  wxStaticText* unsaved_;
  wxStaticText* services_;
  UiThreadCalls calls_;
  ServiceProbe probe_;
  wxTimer timer_;
};

}  // namespace qlx
