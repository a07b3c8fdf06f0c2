#include "app/program_icon.h"

#include "program_icon_svg.h"

namespace qlx {
namespace {

constexpr int kIconSizes[] = {16, 32, 48};

}  // namespace

wxBitmapBundle ProgramIcon(const wxSize& size) {
  return wxBitmapBundle::FromSVG(kProgramIconSvg, size);
}

wxIconBundle ProgramIcons() {
  wxIconBundle icons;
  for (const int side : kIconSizes) {
    wxIcon icon;
    icon.CopyFromBitmap(ProgramIcon(wxSize(side, side)).GetBitmap(wxSize(side, side)));
    icons.AddIcon(icon);
  }
  return icons;
}

}  // namespace qlx
