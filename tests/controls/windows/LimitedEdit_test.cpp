// The ways by which text gets into a native field on Windows only.
#include "controls/LimitedEdit.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/msw/wrapwin.h>

namespace qlx {
namespace {

class NativeLimitedEditTest : public testing::Test {
 protected:
  ~NativeLimitedEditTest() override { frame_->Destroy(); }

  static void Type(LimitedEdit& edit, std::wstring_view characters) {
    for (const wchar_t character : characters) SendMessageW(edit.GetHWND(), WM_CHAR, character, 1);
  }

  wxFrame* frame_ = new wxFrame(nullptr, wxID_ANY, "");
};

TEST_F(NativeLimitedEditTest, AutomationIsHeldToTheRule) {
  LimitedEdit edit(frame_, wxID_ANY, {3, true});
  SetWindowTextW(edit.GetHWND(), L"1a2b345");
  EXPECT_EQ(edit.Text(), L"123");
}

TEST_F(NativeLimitedEditTest, TypingIsHeldToTheRule) {
  LimitedEdit edit(frame_, wxID_ANY, {3, true});
  Type(edit, L"1a2b345");
  EXPECT_EQ(edit.Text(), L"123");
}

TEST_F(NativeLimitedEditTest, ACharacterThatComesInTwoHalvesIsTakenWholeOrNotAtAll) {
  LimitedEdit edit(frame_, wxID_ANY, {3, false});
  Type(edit, L"\U0001F5A8\U0001F5A8");
  EXPECT_EQ(edit.Text(), L"\U0001F5A8");
}

TEST_F(NativeLimitedEditTest, BackspaceIsNoText) {
  LimitedEdit edit(frame_, wxID_ANY, {3, true});
  Type(edit, L"12\b");
  EXPECT_EQ(edit.Text(), L"1");
}

TEST_F(NativeLimitedEditTest, AReadOnlyFieldTakesNoTyping) {
  LimitedEdit edit(frame_, wxID_ANY, {}, wxTE_READONLY);
  edit.SetText(L"kept");
  Type(edit, L"x");
  EXPECT_EQ(edit.Text(), L"kept");
}

TEST_F(NativeLimitedEditTest, WhatWasTakenOutIsBroughtBackByUndo) {
  LimitedEdit edit(frame_, wxID_ANY, {6, false});
  edit.WriteText("123456");
  edit.SetSelection(1, 5);
  edit.WriteText("");
  edit.Undo();
  EXPECT_EQ(edit.Text(), L"123456");
}

TEST_F(NativeLimitedEditTest, UndoBringsBackNoMoreThanTheLimitAllows) {
  LimitedEdit edit(frame_, wxID_ANY, {6, false});
  edit.WriteText("123456");
  edit.SetSelection(1, 5);
  edit.WriteText("");
  edit.SetLimit(4);
  edit.Undo();
  EXPECT_EQ(edit.Text(), L"16");
}

}  // namespace
}  // namespace qlx
