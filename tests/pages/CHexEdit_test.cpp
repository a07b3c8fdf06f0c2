#include "pages/CHexEdit.h"

#include <gtest/gtest.h>
#include <wx/clipbrd.h>
#include <wx/frame.h>

#include "tests/support/event_loop.h"

namespace qlx {
namespace {

class CHexEditTest : public testing::Test {
 protected:
  CHexEditTest() {
    frame_->Show();
    edit_ = new CHexEdit(frame_, wxID_ANY);
    edit_->SetFocus();
  }
  ~CHexEditTest() override { frame_->Destroy(); }

  static void PutOnClipboard(const wxString& text) {
    const wxClipboardLocker clipboard;
    wxTheClipboard->SetData(new wxTextDataObject(text));
  }

  static wxString Clipboard() {
    const wxClipboardLocker clipboard;
    wxTextDataObject data;
    wxTheClipboard->GetData(data);
    return data.GetText();
  }

  wxFrame* frame_ = new wxFrame(nullptr, wxID_ANY, "");
  CHexEdit* edit_ = nullptr;
};

TEST_F(CHexEditTest, WhatTheProgramSetsStandsAsItIs) {
  edit_->SetText(L"9 41 100 x" + std::wstring(60, L'A'));
  EXPECT_EQ(edit_->Text(), L"9 41 100 x" + std::wstring(60, L'A'));
}

TEST_F(CHexEditTest, PastingLeavesDigitsInPairsAndTheCaretAtTheEnd) {
  PutOnClipboard("0D-0a ZZ 41");
  edit_->Paste();
  EXPECT_EQ(edit_->Text(), L"0D 0A 41");
  EXPECT_EQ(edit_->GetInsertionPoint(), 8);
}

TEST_F(CHexEditTest, PastingOverASelectionReplacesItInItsPlace) {
  edit_->SetText(L"11 22 33");
  edit_->SetSelection(3, 5);
  PutOnClipboard("ab c");
  edit_->Paste();
  EXPECT_EQ(edit_->Text(), L"11 AB C3 3");
}

TEST_F(CHexEditTest, PastingAMillionCharactersFillsTheField) {
  PutOnClipboard(wxString('f', 1'000'000));
  edit_->Paste();
  EXPECT_EQ(edit_->Text().size(), kHexLength);
}

TEST_F(CHexEditTest, PastingFromAClipboardWithoutTextChangesNothing) {
  {
    const wxClipboardLocker clipboard;
    wxTheClipboard->Clear();
  }
  edit_->SetText(L"0D");
  edit_->Paste();
  EXPECT_EQ(edit_->Text(), L"0D");
}

TEST_F(CHexEditTest, CuttingPutsTheSelectionOnTheClipboardAndRegroupsTheRest) {
  edit_->SetText(L"0D 0A 1F");
  edit_->SetSelection(4, 6);
  edit_->Cut();
  EXPECT_EQ(edit_->Text(), L"0D 01 F");
  EXPECT_EQ(edit_->GetInsertionPoint(), 3);
  EXPECT_EQ(Clipboard(), "A ");
}

TEST_F(CHexEditTest, CuttingWithoutASelectionLeavesTheClipboard) {
  PutOnClipboard("kept");
  edit_->SetText(L"0D");
  edit_->SetInsertionPointEnd();
  edit_->Cut();
  EXPECT_EQ(edit_->Text(), L"0D");
  EXPECT_EQ(Clipboard(), "kept");
}

TEST_F(CHexEditTest, AnInsertionOfAnyOtherSourceIsLaidOutToo) {
  edit_->SetText(L"0D 0A");
  edit_->SetInsertionPoint(1);
  edit_->WriteText("1-2");
  EXPECT_EQ(edit_->Text(), L"01 2D 0A");
  EXPECT_EQ(edit_->GetInsertionPoint(), 8);
}

TEST_F(CHexEditTest, ASingleDigitOfAnInputMethodIsTypedWhereTheCaretIs) {
  edit_->SetText(L"0D 0A");
  edit_->SetInsertionPoint(1);
  edit_->WriteText("b");
  EXPECT_EQ(edit_->Text(), L"0B D0 A");
  EXPECT_EQ(edit_->GetInsertionPoint(), 2);
}

TEST_F(CHexEditTest, AnErasureOfAnyOtherSourceIsLaidOutToo) {
  edit_->SetText(L"0D 0A 1F");
  edit_->Remove(1, 4);
  EXPECT_EQ(edit_->Text(), L"0A 1F");
  edit_->Remove(0, -1);
  EXPECT_EQ(edit_->Text(), L"");
}

TEST_F(CHexEditTest, UndoLeavesTheTextLaidOut) {
  edit_->WriteText("0d0a4");
  edit_->Undo();
  EXPECT_EQ(edit_->Text(), Reformat({edit_->Text()}, CaretMode::kEnd).text);
  edit_->Redo();
  EXPECT_EQ(edit_->Text(), Reformat({edit_->Text()}, CaretMode::kEnd).text);
}

}  // namespace
}  // namespace qlx
