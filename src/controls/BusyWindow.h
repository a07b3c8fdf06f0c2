// A window that is busy on the user-interface thread and is painted all the same.
#pragma once

#include <chrono>

#include <wx/utils.h>
#include <wx/weakref.h>
#include <wx/window.h>

namespace qlx {

/// As long as it lives, `window` takes no input and shows the busy cursor; afterwards the control that had
/// the focus has it again. User-interface thread.
class BusyWindow {
 public:
  explicit BusyWindow(wxWindow& window);
  BusyWindow(const BusyWindow&) = delete;
  BusyWindow& operator=(const BusyWindow&) = delete;
  ~BusyWindow();

  /// Returns after `length`; events, paint events first of all, are served meanwhile.
  void Wait(std::chrono::milliseconds length);

 private:
  wxWindow& window_;
  wxWeakRef<wxWindow> focus_;
  wxBusyCursor cursor_;
};

/// Serves what is there to be painted and returns at once, for a caller that waits by itself.
void ServePainting();

}  // namespace qlx
