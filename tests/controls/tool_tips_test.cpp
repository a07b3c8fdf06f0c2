#include "controls/tool_tips.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/checkbox.h>
#include <wx/frame.h>
#include <wx/tooltip.h>

namespace qlx {
namespace {

constexpr int kStrip = 1006;
constexpr int kHide = 1007;
constexpr char kShort[] = "Not sent.";
constexpr char kLong[] =
    "Sentinels are the characters that mark on the card where a track starts and where it ends. Stripped, "
    "they are "
    "not sent to the application.";

class ToolTips : public testing::Test {
 protected:
  ~ToolTips() override { frame_->Destroy(); }

  wxFrame* frame_ = new wxFrame(nullptr, wxID_ANY, "");
  wxCheckBox* strip_ = new wxCheckBox(frame_, kStrip, "Strip Sentinels");
  wxCheckBox* hide_ = new wxCheckBox(frame_, kHide, "Hide Error Tracks");
};

TEST_F(ToolTips, EveryTermIsExplainedAtItsControl) {
  static constexpr Term kTerms[] = {{kHide, kShort}, {kStrip, kLong}};
  ExplainTerms(*frame_, kTerms);
  EXPECT_EQ(hide_->GetToolTip(), nullptr) << "before the window is there";
  wxTheApp->ProcessPendingEvents();
  EXPECT_EQ(hide_->GetToolTipText(), kShort);
  wxString one_line = strip_->GetToolTipText();
  one_line.Replace("\n", " ");
  EXPECT_EQ(one_line, kLong);
}

TEST_F(ToolTips, NoLineIsLongerThanItsWidth) {
  SetTip(*strip_, kLong, 200);
  const wxArrayString lines = wxSplit(strip_->GetToolTipText(), '\n');
  EXPECT_GT(lines.size(), 2U);
  for (const wxString& line : lines) EXPECT_LE(strip_->GetTextExtent(line).x, strip_->FromDIP(200)) << line;
}

TEST_F(ToolTips, AnotherTextReplacesTheFirst) {
  SetTip(*strip_, kLong, 200);
  SetTip(*strip_, kShort, 200);
  EXPECT_EQ(strip_->GetToolTipText(), kShort);
}

}  // namespace
}  // namespace qlx
