#include "pages/CPictureBox.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include <wx/dcbuffer.h>
#include <wx/image.h>

#include "pages/logo_image.h"

namespace qlx {
namespace {

/// What is kept of a larger picture: enough for a box of any size on a screen.
constexpr PixelSize kLargestKept = {2048, 2048};

PixelSize SizeOf(const platform::RgbImage& picture) {
  return {picture.width, picture.height};
}

wxImage ToolkitImage(const platform::RgbImage& picture) {
  wxImage image(picture.width, picture.height, false);
  std::uint8_t* out = image.GetData();
  for (int y = 0; y < picture.height; ++y) out = std::ranges::copy(picture.Row(y), out).out;
  return image;
}

int Share(int side, int of, int whole) {
  return std::max(1, static_cast<int>(std::int64_t{side} * of / whole));
}

}  // namespace

PixelSize SizeInBox(PixelSize picture, PixelSize box) {
  const bool wider = std::int64_t{picture.width} * box.height > std::int64_t{box.width} * picture.height;
  return wider ? PixelSize{box.width, Share(picture.height, box.width, picture.width)}
               : PixelSize{Share(picture.width, box.height, picture.height), box.height};
}

CPictureBox::CPictureBox(wxWindow* parent, int id, Decode decode)
    : wxWindow(parent, id, wxDefaultPosition, wxDefaultSize, wxBORDER_THEME | wxFULL_REPAINT_ON_RESIZE),
      decode_(std::move(decode)) {
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  Bind(wxEVT_PAINT, [this](wxPaintEvent&) { Paint(); });
}

void CPictureBox::ShowPicture(const std::optional<std::wstring>& path) {
  picture_.reset();
  if (auto decoded = path ? decode_(*path) : std::nullopt) {
    const PixelSize kept = SizeInBox(SizeOf(decoded->image), kLargestKept);
    const bool larger = kept.width < decoded->image.width || kept.height < decoded->image.height;
    picture_ = larger ? Scaled(decoded->image, kept) : std::move(decoded->image);
  }
  bitmap_ = wxBitmap();
  Refresh();
}

wxSize CPictureBox::DoGetBestClientSize() const {
  return ConvertDialogToPixels(wxSize(90, 60));
}

void CPictureBox::FitBitmap() {
  const wxSize box = GetClientSize();
  if (bitmap_.IsOk() && fitted_to_ == box) return;
  const PixelSize size = SizeInBox(SizeOf(*picture_), {box.GetWidth(), box.GetHeight()});
  bitmap_ = wxBitmap(ToolkitImage(Scaled(*picture_, size)));
  fitted_to_ = box;
}

void CPictureBox::Paint() {
  wxAutoBufferedPaintDC dc(this);
  dc.SetBackground(GetBackgroundColour());
  dc.Clear();
  if (!picture_ || GetClientSize().GetWidth() < 1 || GetClientSize().GetHeight() < 1) return;
  FitBitmap();
  const wxSize space = GetClientSize() - bitmap_.GetSize();
  dc.DrawBitmap(bitmap_, space.GetWidth() / 2, space.GetHeight() / 2);
}

}  // namespace qlx
