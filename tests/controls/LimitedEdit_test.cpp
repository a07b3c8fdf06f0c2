#include "controls/LimitedEdit.h"

#include <gtest/gtest.h>
#include <wx/clipbrd.h>
#include <wx/frame.h>

#include "tests/support/event_loop.h"

namespace qlx {
namespace {

class LimitedEditTest : public testing::Test {
 protected:
  LimitedEditTest() {
    frame_->Show();
    frame_->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { ++changes_; });
  }
  ~LimitedEditTest() override { frame_->Destroy(); }

  wxFrame* frame_ = new wxFrame(nullptr, wxID_ANY, "");
  int changes_ = 0;
};

TEST_F(LimitedEditTest, WhatTheProgramSetsIsNotCutAndSendsNoChange) {
  LimitedEdit edit(frame_, wxID_ANY, {3, true});
  edit.SetText(L"longer than three");
  EXPECT_EQ(edit.Text(), L"longer than three");
  EXPECT_EQ(changes_, 0);
}

TEST_F(LimitedEditTest, ALowerLimitLeavesTheTextThatIsThere) {
  LimitedEdit edit(frame_, wxID_ANY, {10, false});
  edit.SetText(L"1234567890");
  edit.SetLimit(4);
  EXPECT_EQ(edit.Text(), L"1234567890");
  edit.WriteText("x");
  EXPECT_EQ(edit.Text(), L"1234567890");
}

TEST_F(LimitedEditTest, AnInsertionInTheMiddleKeepsTheCaretBehindWhatWasTaken) {
  LimitedEdit edit(frame_, wxID_ANY, {6, true});
  edit.SetText(L"1256");
  edit.SetInsertionPoint(2);
  edit.WriteText("3a4b7");
  EXPECT_EQ(edit.Text(), L"123456");
  EXPECT_EQ(edit.GetInsertionPoint(), 4);
}

TEST_F(LimitedEditTest, PastingAMillionCharactersTakesWhatFits) {
  LimitedEdit edit(frame_, wxID_ANY, {260, false});
  ASSERT_TRUE(wxTheClipboard->Open());
  wxTheClipboard->SetData(new wxTextDataObject(wxString('x', 1000000)));
  wxTheClipboard->Close();
  edit.SetFocus();
  edit.Paste();
  EXPECT_TRUE(ServeUntil([&] { return !edit.Text().empty(); }));
  EXPECT_EQ(edit.Text(), std::wstring(260, L'x'));
}

TEST_F(LimitedEditTest, TypingOverASelectionCountsWhatTheSelectionFreed) {
  LimitedEdit edit(frame_, wxID_ANY, {4, false});
  edit.SetText(L"abcd");
  edit.SetSelection(1, 3);
  edit.WriteText("xyz");
  EXPECT_EQ(edit.Text(), L"axyd");
}

}  // namespace
}  // namespace qlx
