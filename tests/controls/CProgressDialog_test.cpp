#include "controls/CProgressDialog.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/uiaction.h>

#include "controls/RestartProgress.h"
#include "tests/support/event_loop.h"

namespace qlx {
namespace {

class RestartWindowTest : public testing::Test {
 protected:
  RestartWindowTest() { frame_->Show(); }
  ~RestartWindowTest() override { frame_->Destroy(); }

  /// The progress windows that are open.
  static std::vector<CProgressDialog*> Open() {
    std::vector<CProgressDialog*> open;
    for (wxWindow* window : wxTopLevelWindows) {
      if (auto* dialog = dynamic_cast<CProgressDialog*>(window); dialog != nullptr && dialog->IsShown()) {
        open.push_back(dialog);
      }
    }
    return open;
  }

  /// Has `states` reported by a thread of its own, as the restart does.
  static void Report(RestartProgress& progress, std::vector<int> states) {
    std::atomic<bool> over = false;
    std::thread worker([&] {
      for (const int state : states) progress.OnRestartProgress(state);
      over = true;
    });
    EXPECT_TRUE(ServeUntil([&] { return over.load(); }));
    worker.join();
  }

  wxFrame* frame_ = new wxFrame(nullptr, wxID_ANY, "owner");
};

TEST_F(RestartWindowTest, TheProgressWindowHasItsCaptionAndItsBar) {
  CProgressDialog dialog(frame_);
  EXPECT_EQ(dialog.GetTitle(), "In Progress...");
  EXPECT_NE(dialog.FindWindow(CProgressDialog::kBarId), nullptr);
}

TEST_F(RestartWindowTest, TheProgressWindowCannotBeClosedByTheUser) {
  CProgressDialog dialog(frame_);
  dialog.Show();
  EXPECT_FALSE(dialog.Close());
  EXPECT_TRUE(dialog.IsShown());
}

TEST_F(RestartWindowTest, State0DisablesTheWindowAndShowsOneProgressWindow) {
  RestartProgress progress(*frame_, nullptr, [] {});
  Report(progress, {0, 0});
  EXPECT_FALSE(frame_->IsEnabled());
  ASSERT_EQ(Open().size(), 1U);
  EXPECT_EQ(Open()[0]->GetTitle(), "Restarting services...");
}

TEST_F(RestartWindowTest, State1TakesTheProgressWindowAwayAndLeavesTheWindowDisabled) {
  RestartProgress progress(*frame_, nullptr, [] {});
  Report(progress, {0, 1, 1});
  EXPECT_TRUE(Open().empty());
  EXPECT_FALSE(frame_->IsEnabled());
}

TEST_F(RestartWindowTest, State1EnablesAWindowThatIsToGoOn) {
  RestartProgress progress(*frame_, frame_, [] {});
  Report(progress, {0});
  EXPECT_FALSE(frame_->IsEnabled());
  Report(progress, {1});
  EXPECT_TRUE(frame_->IsEnabled());
}

TEST_F(RestartWindowTest, State2IsHandedToTheOwner) {
  int over = 0;
  RestartProgress progress(*frame_, nullptr, [&] { ++over; });
  Report(progress, {2});
  EXPECT_EQ(over, 1);
}

TEST_F(RestartWindowTest, AnOwnerThatGoesAwayWhileAWorkerReportsLetsTheWorkerEnd) {
  auto progress = std::make_unique<RestartProgress>(*frame_, nullptr, [] {});
  std::thread worker([&target = *progress] { target.OnRestartProgress(0); });
  progress->Release();
  worker.join();
  EXPECT_TRUE(Open().empty());
}

}  // namespace
}  // namespace qlx
