// What the user sees of a service restart.
#pragma once

#include <functional>
#include <memory>

#include <wx/window.h>

#include "controls/CProgressDialog.h"
#include "controls/UiThreadCalls.h"
#include "services/ServiceRestart.h"

namespace qlx {

/// Puts a restart worker's reports before the user: progress 0 disables `window` and shows the progress
/// window, progress 1 takes that away, messages come as boxes over the top-level window of `window`, and
/// `over` is called at progress 2. At progress 1 `window` is enabled again and `focus_after` gets the focus;
/// without a `focus_after` it stays disabled. Lives on the user-interface thread; declare it before the
/// ServiceRestart that reports to it and call Release before that one is destroyed.
class RestartProgress : public RestartTarget {
 public:
  RestartProgress(wxWindow& window, wxWindow* focus_after, std::function<void()> over);

  void OnRestartProgress(int state) override;
  void ShowRestartMessage(const Message& message, RestartIcon icon) override;

  /// Lets a worker that waits for the user-interface thread go on, now and from now on.
  void Release() { calls_.Close(); }

 private:
  void Handle(int state);

  wxWindow& window_;
  wxWindow* focus_after_;
  std::function<void()> over_;
  std::unique_ptr<CProgressDialog> progress_;
  UiThreadCalls calls_;
};

}  // namespace qlx
