#include "controls/ReportList.h"

#include <gtest/gtest.h>
#include <wx/frame.h>

#include "tests/support/report_list.h"

namespace qlx {
namespace {

class ReportListTest : public testing::Test {
 protected:
  ReportListTest() {
    for (const char* title : {"Slot", "State"}) list_->AddColumn(title, 50);
    for (const char* row : {"1", "2", "3"}) list_->AddRow(row);
  }
  ~ReportListTest() override { frame_->Destroy(); }

  wxFrame* frame_ = new wxFrame(nullptr, wxID_ANY, "");
  std::unique_ptr<ReportList> list_ = MakeReportList(frame_, 1081);
};

TEST_F(ReportListTest, HasItsNumber) {
  EXPECT_EQ(list_->window().GetId(), 1081);
}

TEST_F(ReportListTest, EachCellHasItsText) {
  list_->SetCell(1, 1, L"used");
  list_->SetCell(1, 1, L"free again");
  EXPECT_EQ(test::CellOf(list_->window(), 1, 0), L"2");
  EXPECT_EQ(test::CellOf(list_->window(), 1, 1), L"free again");
  EXPECT_EQ(test::CellOf(list_->window(), 2, 1), L"");
}

TEST_F(ReportListTest, NoRowIsSelectedAtFirst) {
  EXPECT_EQ(list_->SelectedRow(), std::nullopt);
}

TEST_F(ReportListTest, ASelectionIsToldAndKnown) {
  int told = 0;
  list_->OnSelection([&] { ++told; });
  test::SelectRow(list_->window(), 2);
  EXPECT_EQ(list_->SelectedRow(), 2);
  EXPECT_GE(told, 1);
}

TEST_F(ReportListTest, AnotherSelectionTakesThePlaceOfTheFirst) {
  test::SelectRow(list_->window(), 2);
  test::SelectRow(list_->window(), 0);
  EXPECT_EQ(list_->SelectedRow(), 0);
}

}  // namespace
}  // namespace qlx
