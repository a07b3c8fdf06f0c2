#include "controls/BusyWindow.h"

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/timer.h>

namespace qlx {

BusyWindow::BusyWindow(wxWindow& window) : window_(window), focus_(wxWindow::FindFocus()) {
  window_.Disable();
}

BusyWindow::~BusyWindow() {
  window_.Enable();
  if (focus_) focus_->SetFocus();
}

void BusyWindow::Wait(std::chrono::milliseconds length) {
  wxGUIEventLoop loop;
  wxTimer timer;
  timer.Bind(wxEVT_TIMER, [&](wxTimerEvent&) { loop.Exit(); });
  timer.StartOnce(static_cast<int>(length.count()));
  loop.Run();
}

void ServePainting() {
  wxTheApp->Yield(true);
}

}  // namespace qlx
