#include "controls/CToolTipButton.h"

#include <gtest/gtest.h>
#include <wx/frame.h>

namespace qlx {
namespace {

class CToolTipButtonTest : public testing::Test {
 protected:
  ~CToolTipButtonTest() override { frame_->Destroy(); }

  wxFrame* frame_ = new wxFrame(nullptr, wxID_ANY, "");
  CToolTipButton* button_ = new CToolTipButton(frame_, wxID_ANY, "...");
};

TEST_F(CToolTipButtonTest, NullDoesNothing) {
  button_->SetToolTipText(nullptr);
  EXPECT_EQ(button_->GetToolTip(), nullptr);
}

TEST_F(CToolTipButtonTest, ASecondTextReplacesTheFirst) {
  button_->SetToolTipText(L"first");
  button_->SetToolTipText(L"second");
  EXPECT_EQ(button_->GetToolTipText(), "second");
}

TEST_F(CToolTipButtonTest, ALongTextWrapsAtAbout200Pixels) {
  button_->SetToolTipText(L"Converts what is typed here, letter by letter, to pairs of hexadecimal digits.");
  const wxString tip = button_->GetToolTipText();
  EXPECT_GT(tip.Freq('\n'), 0);
  for (const wxString& line : wxSplit(tip, '\n')) EXPECT_LE(button_->GetTextExtent(line).x, 200) << line;
}

}  // namespace
}  // namespace qlx
