#include "pages/CPictureBox.h"

#include <algorithm>

#include <gdk/gdk.h>
#include <gtest/gtest.h>
#include <wx/frame.h>

#include "pages/logo_image.h"
#include "tests/support/event_loop.h"

namespace qlx {
namespace {

// --- SizeInBox ---

TEST(SizeInBox, FillsTheWidthWithAWidePicture) {
  EXPECT_EQ(SizeInBox({1000, 500}, {100, 100}), (PixelSize{100, 50}));
}

TEST(SizeInBox, FillsTheHeightWithATallPicture) {
  EXPECT_EQ(SizeInBox({500, 1000}, {100, 100}), (PixelSize{50, 100}));
}

TEST(SizeInBox, EnlargesASmallPicture) {
  EXPECT_EQ(SizeInBox({2, 1}, {100, 100}), (PixelSize{100, 50}));
}

TEST(SizeInBox, LeavesOnePixelOfAThread) {
  EXPECT_EQ(SizeInBox({50'000'000, 1}, {100, 100}), (PixelSize{100, 1}));
  EXPECT_EQ(SizeInBox({1, 50'000'000}, {100, 100}), (PixelSize{1, 100}));
}

// --- CPictureBox ---

/// A box that fills its frame, for pictures named "red" (a small square), "blue" (large and wide) and no
/// others.
class CPictureBoxTest : public testing::Test {
 protected:
  CPictureBoxTest() {
    frame_->SetPosition(wxPoint(50, 50));
    frame_->Show();
  }
  ~CPictureBoxTest() override { frame_->Destroy(); }

  static std::optional<platform::DecodedImage> Decode(const std::wstring& path) {
    if (path != L"red" && path != L"blue") return std::nullopt;
    platform::DecodedImage picture{NewImage(path == L"red" ? PixelSize{10, 10} : PixelSize{4000, 1000}), 24};
    for (int y = 0; y < picture.image.height; ++y) {
      const auto row = picture.image.Row(y);
      std::ranges::fill(row, 0);
      for (std::size_t at = path == L"red" ? 0 : 2; at < row.size(); at += 3) row[at] = 255;
    }
    return picture;
  }

  /// What is on the screen at (x, y) of the box.
  wxColour ColourAt(int x, int y) const {
    const wxPoint at = box_->ClientToScreen(wxPoint(x, y));
    GdkPixbuf* pixel = gdk_pixbuf_get_from_window(gdk_get_default_root_window(), at.x, at.y, 1, 1);
    const guchar* rgb = gdk_pixbuf_read_pixels(pixel);
    const wxColour colour(rgb[0], rgb[1], rgb[2]);
    g_object_unref(pixel);
    return colour;
  }
  bool Becomes(const wxColour& colour, int x, int y) const {
    return ServeUntil([&] { return ColourAt(x, y) == colour; });
  }

  wxFrame* frame_ = new wxFrame(nullptr, wxID_ANY, "", wxDefaultPosition, wxSize(400, 300));
  CPictureBox* box_ = new CPictureBox(frame_, 1086, Decode);
};

TEST_F(CPictureBoxTest, PaintsThePictureInTheMiddleAsLargeAsFits) {
  box_->ShowPicture(L"red");
  const wxSize space = box_->GetClientSize();
  const int side = std::min(space.GetWidth(), space.GetHeight());
  const int left = (space.GetWidth() - side) / 2;
  const int top = (space.GetHeight() - side) / 2;
  EXPECT_TRUE(Becomes(*wxRED, left + 1, top + 1));
  EXPECT_TRUE(Becomes(*wxRED, left + side - 2, top + side - 2));
  ASSERT_GT(left, 2);
  EXPECT_NE(ColourAt(left - 2, space.GetHeight() / 2), *wxRED);
  EXPECT_NE(ColourAt(left + side + 1, space.GetHeight() / 2), *wxRED);
}

TEST_F(CPictureBoxTest, ReplacesOnePictureByAnother) {
  const wxSize middle = box_->GetClientSize() / 2;
  box_->ShowPicture(L"red");
  EXPECT_TRUE(Becomes(*wxRED, middle.GetWidth(), middle.GetHeight()));
  box_->ShowPicture(L"blue");
  EXPECT_TRUE(Becomes(*wxBLUE, middle.GetWidth(), middle.GetHeight()));
}

TEST_F(CPictureBoxTest, ShowsNothingForAFileThatCannotBeRead) {
  const wxSize middle = box_->GetClientSize() / 2;
  box_->ShowPicture(L"red");
  EXPECT_TRUE(Becomes(*wxRED, middle.GetWidth(), middle.GetHeight()));
  box_->ShowPicture(L"no picture");
  EXPECT_TRUE(ServeUntil([&] { return ColourAt(middle.GetWidth(), middle.GetHeight()) != *wxRED; }));
}

TEST_F(CPictureBoxTest, ShowsNothingWithoutAPicture) {
  const wxSize middle = box_->GetClientSize() / 2;
  box_->ShowPicture(L"red");
  EXPECT_TRUE(Becomes(*wxRED, middle.GetWidth(), middle.GetHeight()));
  box_->ShowPicture(std::nullopt);
  EXPECT_TRUE(ServeUntil([&] { return ColourAt(middle.GetWidth(), middle.GetHeight()) != *wxRED; }));
}

TEST_F(CPictureBoxTest, FitsThePictureAnewWhenItsSizeChanges) {
  box_->ShowPicture(L"blue");
  EXPECT_TRUE(Becomes(*wxBLUE, box_->GetClientSize().GetWidth() / 2, box_->GetClientSize().GetHeight() / 2));
  frame_->SetClientSize(300, 75);  // the picture's own proportions
  EXPECT_TRUE(ServeUntil([&] { return box_->GetClientSize().GetWidth() < 320; }));
  EXPECT_TRUE(Becomes(*wxBLUE, 4, box_->GetClientSize().GetHeight() / 2));
  EXPECT_TRUE(Becomes(*wxBLUE, box_->GetClientSize().GetWidth() - 4, box_->GetClientSize().GetHeight() / 2));
}

}  // namespace
}  // namespace qlx
