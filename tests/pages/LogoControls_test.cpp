#include "pages/LogoControls.h"

#include <filesystem>

#include <gtest/gtest.h>
#include <wx/frame.h>

#include "platform/text.h"
#include "tests/support/report_list.h"

namespace qlx {
namespace {

constexpr int kList = 1081;
constexpr int kAdd = 1082;
constexpr int kDelete = 1083;

class LogoControlsTest : public testing::Test {
 protected:
  ~LogoControlsTest() override { frame_->Destroy(); }

  wxWindow& Control(int id) { return *frame_->FindWindow(id); }

  std::string Availability(int row) { return platform::ToUtf8(test::CellOf(Control(kList), row, 1)); }

  void Click(int button) {
    wxCommandEvent click(wxEVT_BUTTON, button);
    Control(button).ProcessWindowEvent(click);
  }

  wxFrame* frame_ = new wxFrame(nullptr, wxID_ANY, "");
  LogoStore store_{{.decode = [](const std::wstring&) { return std::nullopt; },
                    .encode = {},
                    .files = nullptr,
                    .files_in = {},
                    .remove_file = [](const std::wstring&) { return true; },
                    .data_directory = {},
                    .temporary_directory = {},
                    .now = {},
                    .log_error = {}}};
  std::optional<LogoControls::Choice> choice_ = LogoControls::Choice{L"/pictures/logo.bmp", 2};
  LogoControls controls_{frame_, store_, [](const std::wstring&) { FAIL(); }, [this] { return choice_; }};
};

TEST_F(LogoControlsTest, NothingIsShownAndNothingCanBePressedBeforeARowIsSelected) {
  for (const int id : {kList, kAdd, kDelete, 1086}) EXPECT_FALSE(Control(id).IsShown()) << id;
  EXPECT_FALSE(Control(kAdd).IsEnabled() || Control(kDelete).IsEnabled());
}

TEST_F(LogoControlsTest, EveryRowTellsWhetherItIsUsed) {
  store_.Add(2, L"/pictures/logo.bmp", 0, {});
  controls_.Fill();
  EXPECT_EQ(Availability(1), "Not Used");
  EXPECT_EQ(Availability(2), "Used");
}

TEST_F(LogoControlsTest, AFreeRowOffersToAddAndAUsedOneToDelete) {
  test::SelectRow(Control(kList), 0);
  EXPECT_TRUE(Control(kAdd).IsEnabled() && !Control(kDelete).IsEnabled());
  Click(kAdd);
  EXPECT_TRUE(!Control(kAdd).IsEnabled() && Control(kDelete).IsEnabled());
  EXPECT_EQ(Availability(0), "Used");
}

TEST_F(LogoControlsTest, TheChosenPictureAndStationAreKept) {
  test::SelectRow(Control(kList), 4);
  Click(kAdd);
  ASSERT_EQ(store_.records().size(), 1U);
  EXPECT_EQ(store_.records()[0].slot, 5);
  EXPECT_EQ(store_.records()[0].path, L"/pictures/logo.bmp");
  EXPECT_EQ(store_.records()[0].station, Station::kDocumentInsert);
}

TEST_F(LogoControlsTest, NoChoiceChangesNothing) {
  choice_.reset();
  test::SelectRow(Control(kList), 0);
  Click(kAdd);
  EXPECT_TRUE(store_.records().empty());
  EXPECT_TRUE(Control(kAdd).IsEnabled());
}

TEST_F(LogoControlsTest, DeletingFreesTheRow) {
  test::SelectRow(Control(kList), 0);
  Click(kAdd);
  Click(kDelete);
  EXPECT_TRUE(store_.records().empty());
  EXPECT_EQ(Availability(0), "Not Used");
  EXPECT_TRUE(Control(kAdd).IsEnabled());
}

TEST_F(LogoControlsTest, ADoubleClickOnAUsedRowAsksNothing) {
  controls_.Add(0);
  choice_->path = L"/pictures/other.bmp";
  controls_.Add(0);
  EXPECT_EQ(store_.records()[0].path, L"/pictures/logo.bmp");
}

TEST_F(LogoControlsTest, ARightDoubleClickDeletes) {
  controls_.Add(3);
  test::SelectRow(Control(kList), 3);
  wxMouseEvent click(wxEVT_RIGHT_DCLICK);
  Control(kList).ProcessWindowEvent(click);
  EXPECT_TRUE(store_.records().empty());
}

}  // namespace
}  // namespace qlx
