#include "controls/RestartProgress.h"

#include <utility>

#include "controls/message_box.h"
#include "controls/translation.h"

namespace qlx {

RestartProgress::RestartProgress(wxWindow& window, wxWindow* focus_after, std::function<void()> over)
    : window_(window), focus_after_(focus_after), over_(std::move(over)) {}

void RestartProgress::OnRestartProgress(int state) {
  calls_.Run([this, state] { Handle(state); });
}

void RestartProgress::ShowRestartMessage(const Message& message, RestartIcon icon) {
  const BoxIcon picture = icon == RestartIcon::kInformation ? BoxIcon::kInformation : BoxIcon::kNone;
  calls_.Run(
      [this, message, picture] { ShowBox(wxGetTopLevelParent(&window_), Translated(message), picture); });
}

void RestartProgress::Handle(int state) {
  switch (state) {
    case 0:
      window_.Disable();
      if (!progress_) progress_ = std::make_unique<CProgressDialog>(wxGetTopLevelParent(&window_));
      progress_->SetTitle(_("Restarting services..."));
      progress_->Show();
      break;
    case 1:
      progress_.reset();
      if (focus_after_ != nullptr) {
        window_.Enable();
        focus_after_->SetFocus();
      }
      break;
    case 2:
      over_();
      break;
    default:
      break;
  }
}

}  // namespace qlx
