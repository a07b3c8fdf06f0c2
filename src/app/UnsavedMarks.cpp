#include "app/UnsavedMarks.h"

#include <algorithm>
#include <cmath>

#include <wx/bmpbndl.h>
#include <wx/image.h>
#include <wx/settings.h>

#include "controls/SettingsPage.h"

namespace qlx {
namespace {

constexpr int kMark = 0;
constexpr int kSize = 12;  // standard pixels
constexpr double kRadius = 0.33;

/// A disc in the colour of the text, which every theme sets off from the tab.
wxBitmap Disc(int size) {
  const wxColour colour = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT);
  wxImage image(size, size);
  image.SetRGB(wxRect(0, 0, size, size), colour.Red(), colour.Green(), colour.Blue());
  image.InitAlpha();
  const double centre = (size - 1) / 2.0;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const double outside = std::hypot(x - centre, y - centre) - kRadius * size;
      const double opacity = std::clamp(0.5 - outside, 0.0, 1.0);
      image.SetAlpha(x, y, static_cast<unsigned char>(std::lround(opacity * wxALPHA_OPAQUE)));
    }
  }
  return wxBitmap(image);
}

wxBookCtrlBase::Images Mark() {
  wxBookCtrlBase::Images images;
  images.push_back(wxBitmapBundle::FromBitmaps(Disc(kSize), Disc(2 * kSize)));
  return images;
}

}  // namespace

UnsavedMarks::UnsavedMarks(wxNotebook& tabs) : tabs_(tabs) {
  tabs_.SetImages(Mark());
}

void UnsavedMarks::Update() {
  for (std::size_t tab = 0; tab < tabs_.GetPageCount(); ++tab) {
    const bool unsaved = static_cast<SettingsPage*>(tabs_.GetPage(tab))->HasUnsavedChanges();
    const int image = unsaved ? kMark : wxBookCtrlBase::NO_IMAGE;
    if (tabs_.GetPageImage(tab) != image) tabs_.SetPageImage(tab, image);
  }
}

std::vector<std::wstring> UnsavedMarks::Marked() const {
  std::vector<std::wstring> texts;
  for (std::size_t tab = 0; tab < tabs_.GetPageCount(); ++tab) {
    if (tabs_.GetPageImage(tab) == kMark) texts.push_back(tabs_.GetPageText(tab).ToStdWstring());
  }
  return texts;
}

}  // namespace qlx
