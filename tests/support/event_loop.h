// Lets a test on the user-interface thread wait for something that its own event loop brings about.
#pragma once

#include <chrono>

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/utils.h>

namespace qlx {

/// Serves events until `condition` holds; false when that takes longer than 30 seconds.
template <typename Condition>
bool ServeUntil(Condition condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    wxTheApp->ProcessPendingEvents();
    wxEventLoopBase::GetActive()->YieldFor(wxEVT_CATEGORY_ALL);
    wxMilliSleep(1);
  }
  return true;
}

}  // namespace qlx
