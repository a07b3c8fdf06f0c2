#include "app/program_icon.h"

namespace qlx {
namespace {

constexpr char kIconResource[] = "#128";

}  // namespace

wxBitmapBundle ProgramIcon(const wxSize& size) {
  const wxIconBundle icons = ProgramIcons();
  wxVector<wxBitmap> bitmaps;
  for (std::size_t i = 0; i < icons.GetIconCount(); ++i) {
    const wxIcon icon = icons.GetIconByIndex(i);
    if (icon.GetWidth() >= size.GetWidth()) bitmaps.push_back(wxBitmap(icon));
  }
  return wxBitmapBundle::FromBitmaps(bitmaps);
}

wxIconBundle ProgramIcons() {
  return wxIconBundle(kIconResource, nullptr);
}

}  // namespace qlx
