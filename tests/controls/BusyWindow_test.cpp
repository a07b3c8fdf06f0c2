#include "controls/BusyWindow.h"

#include <memory>

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/dcclient.h>
#include <wx/frame.h>
#include <wx/timer.h>

#include "tests/support/event_loop.h"

namespace qlx {
namespace {

using std::chrono::milliseconds;

class BusyWindowTest : public testing::Test {
 protected:
  BusyWindowTest() {
    frame_->Bind(wxEVT_PAINT, [frame = frame_, painted = painted_](wxPaintEvent&) {
      const wxPaintDC dc(frame);
      ++*painted;
    });
    frame_->Show();
  }
  ~BusyWindowTest() override { frame_->Destroy(); }

  std::shared_ptr<int> painted_ = std::make_shared<int>(0);  ///< the frame outlives the test
  wxFrame* frame_ = new wxFrame(nullptr, wxID_ANY, "");
  wxButton* button_ = new wxButton(frame_, wxID_ANY, "Button");
};

TEST_F(BusyWindowTest, TheWindowTakesNoInputAsLongAsItIsBusy) {
  {
    const BusyWindow busy(*frame_);
    EXPECT_FALSE(frame_->IsEnabled());
  }
  EXPECT_TRUE(frame_->IsEnabled());
}

TEST_F(BusyWindowTest, TheWindowIsPaintedWhileItWaits) {
  wxTimer changes;
  changes.Bind(wxEVT_TIMER, [&](wxTimerEvent&) { frame_->Refresh(); });
  changes.Start(5);
  BusyWindow busy(*frame_);
  busy.Wait(milliseconds(300));
  EXPECT_GT(*painted_, 2);
}

TEST_F(BusyWindowTest, AWaitLastsItsWholeLength) {
  bool shorter_over = false;
  wxTimer shorter;
  shorter.Bind(wxEVT_TIMER, [&](wxTimerEvent&) { shorter_over = true; });
  BusyWindow busy(*frame_);
  shorter.StartOnce(100);
  busy.Wait(milliseconds(200));
  EXPECT_TRUE(shorter_over);
}

TEST_F(BusyWindowTest, TheFocusIsWhereItWas) {
  button_->SetFocus();
  ASSERT_TRUE(ServeUntil([&] { return button_->HasFocus(); }));
  {
    BusyWindow busy(*frame_);
    busy.Wait(milliseconds(1));
  }
  EXPECT_TRUE(ServeUntil([&] { return button_->HasFocus(); }));
}

TEST_F(BusyWindowTest, AControlThatGoesMeanwhileIsForgotten) {
  button_->SetFocus();
  ASSERT_TRUE(ServeUntil([&] { return button_->HasFocus(); }));
  const BusyWindow busy(*frame_);
  button_->Destroy();
}

TEST_F(BusyWindowTest, ServingThePaintingReturnsAtOnce) {
  EXPECT_TRUE(ServeUntil([&] {
    frame_->Refresh();
    ServePainting();
    return *painted_ > 2;
  }));
}

}  // namespace
}  // namespace qlx
